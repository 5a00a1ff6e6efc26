#pragma once

#include "model/BlockType.h"
#include "model/ChecklistItem.h"
#include "model/SketchStroke.h"
#include "model/Timestamp.h"

#include <QByteArray>
#include <QObject>
#include <QPointF>
#include <QSharedData>
#include <QStringList>
#include <QUuid>
#include <qqmlintegration.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tallowby {

class AnyCodable;
class Block;

/// The fields of a block that its record is made from, and the two that live beside it. Shared and copied on write: a
/// snapshot for the save queue is one more reference, and a block that changes meanwhile gets fields of its own.
struct BlockFields : QSharedData {
    QUuid id;
    QUuid userId;
    double xPosition = 0;
    double yPosition = 0;
    double width = 0;
    double height = 0;
    std::int64_t zIndex = 0;
    BlockType blockType = BlockType::text;
    /// UTF-8 JSON object with string keys, the payload of the kind; empty or "null" for none.
    QByteArray content;
    std::optional<QString> rawText;
    double fontSize = 16.0;
    QString textColor = QStringLiteral("#000000");
    bool isBold = false;
    bool isItalic = false;
    bool isStrikethrough = false;
    QString stickyColor = QStringLiteral("yellow");
    QString codeLanguage = QStringLiteral("swift");
    /// Degrees, clockwise.
    double rotation = 0;
    std::optional<std::vector<float>> embedding;
    QStringList tags;
    bool isTodo = false;
    bool isEvent = false;
    std::optional<Timestamp> dueDate;
    Timestamp createdAt;
    Timestamp updatedAt;
    std::optional<Timestamp> syncedAt;
    std::optional<Timestamp> deletedAt;
};
using SharedBlockFields = QSharedDataPointer<BlockFields>;

/// Told of each real change of a block's recorded fields, before the change signal. One listener a block: its store.
class BlockChangeListener {
public:
    virtual ~BlockChangeListener() = default;
    virtual void blockRecordChanged(Block &block) = 0;
};

/// One item on the canvas: a positioned, sized rectangle of one of thirteen kinds. Main thread only. A setter writes
/// and notifies only when the value differs, and ignores a number that is not finite, which no record could carry; it
/// never touches `needsSync` or `updatedAt`, which belong to whoever changes the block for the user.
class Block : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Blocks are made by the canvas model")
    Q_PROPERTY(QUuid id READ id CONSTANT)
    Q_PROPERTY(double xPosition READ xPosition WRITE setXPosition NOTIFY xPositionChanged)
    Q_PROPERTY(double yPosition READ yPosition WRITE setYPosition NOTIFY yPositionChanged)
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY widthChanged)
    Q_PROPERTY(double height READ height WRITE setHeight NOTIFY heightChanged)
    Q_PROPERTY(qint64 zIndex READ zIndex WRITE setZIndex NOTIFY zIndexChanged)
    Q_PROPERTY(tallowby::BlockTypes::BlockType blockType READ blockType NOTIFY blockTypeChanged)
    Q_PROPERTY(QString rawText READ rawTextOrEmpty NOTIFY rawTextChanged)
    Q_PROPERTY(double fontSize READ fontSize WRITE setFontSize NOTIFY fontSizeChanged)
    Q_PROPERTY(QString textColor READ textColor WRITE setTextColor NOTIFY textColorChanged)
    Q_PROPERTY(bool isBold READ isBold WRITE setIsBold NOTIFY isBoldChanged)
    Q_PROPERTY(bool isItalic READ isItalic WRITE setIsItalic NOTIFY isItalicChanged)
    Q_PROPERTY(bool isStrikethrough READ isStrikethrough WRITE setIsStrikethrough NOTIFY isStrikethroughChanged)
    Q_PROPERTY(QString stickyColor READ stickyColor WRITE setStickyColor NOTIFY stickyColorChanged)
    Q_PROPERTY(QString codeLanguage READ codeLanguage WRITE setCodeLanguage NOTIFY codeLanguageChanged)
    Q_PROPERTY(double rotation READ rotation WRITE setRotation NOTIFY rotationChanged)
    Q_PROPERTY(bool isSelected READ isSelected WRITE setIsSelected NOTIFY isSelectedChanged)

public:
    /// Takes over every field. `isSelected` and `needsSync` start false.
    explicit Block(SharedBlockFields fields);
    /// A new block of the given kind: fresh id, created and updated now, the other fields at their defaults.
    Block(QUuid userId, BlockType type, QRectF frame);

    /// Factories: the origin goes to `at`; the size is that of the kind.
    [[nodiscard]] static std::shared_ptr<Block> text(QUuid userId, QPointF at, const QString &text);
    [[nodiscard]] static std::shared_ptr<Block> table(QUuid userId, QPointF at);
    [[nodiscard]] static std::shared_ptr<Block> automation(QUuid userId, QPointF at, const QString &response);
    [[nodiscard]] static std::shared_ptr<Block> code(QUuid userId, QPointF at, const QString &code,
                                                     const QString &language);
    [[nodiscard]] static std::shared_ptr<Block> divider(QUuid userId, QPointF at);
    [[nodiscard]] static std::shared_ptr<Block> stickyNote(QUuid userId, QPointF at, const QString &color);
    [[nodiscard]] static std::shared_ptr<Block> voiceNote(QUuid userId, QPointF at);
    [[nodiscard]] static std::shared_ptr<Block> videoNote(QUuid userId, QPointF at);
    [[nodiscard]] static std::shared_ptr<Block> sketch(QUuid userId, QPointF at);
    [[nodiscard]] static std::shared_ptr<Block> icon(QUuid userId, QPointF at, const QString &iconName);

    /// What a snapshot keeps.
    [[nodiscard]] const SharedBlockFields &fields() const { return m_fields; }

    [[nodiscard]] QUuid id() const { return m_fields->id; }
    [[nodiscard]] QUuid userId() const { return m_fields->userId; }
    void setUserId(QUuid userId);
    [[nodiscard]] double xPosition() const { return m_fields->xPosition; }
    void setXPosition(double x);
    [[nodiscard]] double yPosition() const { return m_fields->yPosition; }
    void setYPosition(double y);
    [[nodiscard]] double width() const { return m_fields->width; }
    void setWidth(double width);
    [[nodiscard]] double height() const { return m_fields->height; }
    void setHeight(double height);
    [[nodiscard]] qint64 zIndex() const { return m_fields->zIndex; }
    void setZIndex(qint64 zIndex);
    [[nodiscard]] BlockType blockType() const { return m_fields->blockType; }
    /// Only what comes from elsewhere changes the kind of a block.
    void setBlockType(BlockType type);
    [[nodiscard]] const QByteArray &content() const { return m_fields->content; }
    void setContent(const QByteArray &content);
    /// Sets one key of the payload and leaves the others as they are. A payload that is no JSON object counts as empty;
    /// a value that cannot be written leaves the payload alone.
    void setContentField(const QString &key, const AnyCodable &value);
    /// One key of the payload; none when it is missing or the payload cannot be read whole.
    [[nodiscard]] std::optional<AnyCodable> contentField(const QString &key) const;

    /// What the payload says, by kind. Each call reads the whole payload, so a view keeps what it shows. A payload that
    /// is no JSON object, and a key that is missing or holds another type, reads as the default. A writer changes its
    /// own keys only, but `setTableData`, which replaces the payload; a value that cannot be written changes nothing.
    [[nodiscard]] QString checklistTitle() const;
    [[nodiscard]] std::vector<ChecklistItemPtr> checklistItems() const;
    void setChecklistItems(const std::vector<ChecklistItemPtr> &items);
    /// Rows of cells.
    [[nodiscard]] std::vector<QStringList> tableData() const;
    void setTableData(const std::vector<QStringList> &rows);
    [[nodiscard]] ShapeType shapeType() const;
    void setShapeType(ShapeType type);
    /// "#" and six hexadecimal digits, "#FFFFFF" unless set.
    [[nodiscard]] QString fillColor() const;
    /// The same, "#333333" unless set.
    [[nodiscard]] QString strokeColor() const;
    /// Points, 2 unless set. Nobody has checked that it is positive.
    [[nodiscard]] double strokeWidth() const;
    /// In canvas coordinates, whatever the frame of the block. Strokes and points without a member that they need are
    /// left out.
    [[nodiscard]] std::vector<SketchStroke> sketchStrokes() const;
    void setSketchStrokes(const std::vector<SketchStroke> &strokes);
    /// As the record has it: whoever opens the file checks the name.
    [[nodiscard]] std::optional<QString> mediaFileName() const;
    void setMediaFileName(const std::optional<QString> &name);
    /// Seconds.
    [[nodiscard]] double mediaDuration() const;
    void setMediaDuration(double seconds);
    /// The name of a symbol, "star" unless set.
    [[nodiscard]] QString iconName() const;
    /// The picture's file; none when there is none or its base64 is broken.
    [[nodiscard]] std::optional<QByteArray> imageData() const;
    [[nodiscard]] bool flipHorizontal() const;
    [[nodiscard]] bool flipVertical() const;

    /// Fits the frame to the strokes with `padding` on each side, 60 points a side at least. Strokes without any point
    /// leave it alone.
    void recomputeSketchBounds(double padding);
    void shiftSketchPoints(double dx, double dy);

    [[nodiscard]] const std::optional<QString> &rawText() const { return m_fields->rawText; }
    [[nodiscard]] QString rawTextOrEmpty() const { return m_fields->rawText.value_or(QString()); }
    void setRawText(const std::optional<QString> &text);
    [[nodiscard]] double fontSize() const { return m_fields->fontSize; }
    void setFontSize(double points);
    [[nodiscard]] const QString &textColor() const { return m_fields->textColor; }
    void setTextColor(const QString &color);
    [[nodiscard]] bool isBold() const { return m_fields->isBold; }
    void setIsBold(bool isBold);
    [[nodiscard]] bool isItalic() const { return m_fields->isItalic; }
    void setIsItalic(bool isItalic);
    [[nodiscard]] bool isStrikethrough() const { return m_fields->isStrikethrough; }
    void setIsStrikethrough(bool isStrikethrough);
    [[nodiscard]] const QString &stickyColor() const { return m_fields->stickyColor; }
    void setStickyColor(const QString &color);
    [[nodiscard]] const QString &codeLanguage() const { return m_fields->codeLanguage; }
    void setCodeLanguage(const QString &language);
    [[nodiscard]] double rotation() const { return m_fields->rotation; }
    void setRotation(double degrees);
    [[nodiscard]] const std::optional<std::vector<float>> &embedding() const { return m_fields->embedding; }
    void setEmbedding(const std::optional<std::vector<float>> &embedding);
    [[nodiscard]] const QStringList &tags() const { return m_fields->tags; }
    void setTags(const QStringList &tags);
    [[nodiscard]] bool isTodo() const { return m_fields->isTodo; }
    void setIsTodo(bool isTodo);
    [[nodiscard]] bool isEvent() const { return m_fields->isEvent; }
    void setIsEvent(bool isEvent);
    [[nodiscard]] std::optional<Timestamp> dueDate() const { return m_fields->dueDate; }
    void setDueDate(std::optional<Timestamp> dueDate);
    [[nodiscard]] Timestamp createdAt() const { return m_fields->createdAt; }
    [[nodiscard]] Timestamp updatedAt() const { return m_fields->updatedAt; }
    void setUpdatedAt(Timestamp updatedAt);
    [[nodiscard]] std::optional<Timestamp> syncedAt() const { return m_fields->syncedAt; }
    void setSyncedAt(std::optional<Timestamp> syncedAt);
    [[nodiscard]] std::optional<Timestamp> deletedAt() const { return m_fields->deletedAt; }
    void setDeletedAt(std::optional<Timestamp> deletedAt);
    [[nodiscard]] bool isLive() const { return !m_fields->deletedAt; }

    /// Transient: neither is stored or sent.
    [[nodiscard]] bool isSelected() const { return m_isSelected; }
    void setIsSelected(bool isSelected);
    [[nodiscard]] bool needsSync() const { return m_needsSync; }
    void setNeedsSync(bool needsSync);

    /// The store that holds this block and its place there; none while no store does.
    void setChangeListener(BlockChangeListener *listener, std::size_t place);
    [[nodiscard]] BlockChangeListener *changeListener() const { return m_listener; }
    [[nodiscard]] std::size_t placeInStore() const { return m_place; }

Q_SIGNALS:
    void userIdChanged();
    void xPositionChanged();
    void yPositionChanged();
    void widthChanged();
    void heightChanged();
    void zIndexChanged();
    void blockTypeChanged();
    void contentChanged();
    void rawTextChanged();
    void fontSizeChanged();
    void textColorChanged();
    void isBoldChanged();
    void isItalicChanged();
    void isStrikethroughChanged();
    void stickyColorChanged();
    void codeLanguageChanged();
    void rotationChanged();
    void embeddingChanged();
    void tagsChanged();
    void isTodoChanged();
    void isEventChanged();
    void dueDateChanged();
    void updatedAtChanged();
    void syncedAtChanged();
    void deletedAtChanged();
    void isSelectedChanged();
    void needsSyncChanged();

private:
    template <typename Value>
    void write(Value BlockFields::*field, const Value &value, void (Block::*changed)());
    /// Puts `"key":value`, which is compact JSON, in the place of the key; empty text takes the key out.
    void setPayloadMember(const QByteArray &key, const QByteArray &member);

    SharedBlockFields m_fields;
    BlockChangeListener *m_listener = nullptr;
    std::size_t m_place = 0;
    bool m_isSelected = false;
    bool m_needsSync = false;
};
using BlockPtr = std::shared_ptr<Block>;

/// What `Block::imageData` gives for a block with that payload. On any thread.
[[nodiscard]] std::optional<QByteArray> imageDataIn(const QByteArray &content);

} // namespace tallowby
