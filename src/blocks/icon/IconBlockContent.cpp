#include "blocks/icon/IconBlockContent.h"

#include "blocks/icon/IconPickerView.h"
#include "canvas/drawing/SketchRenderer.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "model/AnyCodable.h"
#include "platform/theme/SymbolTable.h"
#include "platform/theme/Theme.h"

#include <QQmlComponent>
#include <QQmlEngine>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

const QUrl kPickerFile(QStringLiteral("qrc:/qt/qml/Tallowby/Blocks/IconPicker.qml"));
const QString kUnknownSymbol = QStringLiteral("questionmark.square");
/// In points of the screen; a record from elsewhere may claim any size.
constexpr double kLargestSide = 1024;
/// Between the block and the panel.
constexpr double kPickerGap = 12;

} // namespace

IconBlockContent::~IconBlockContent() {
    delete m_picker;
}

void IconBlockContent::componentComplete() {
    BlockBody::componentComplete();
    connect(block(), &Block::contentChanged, this, &IconBlockContent::readPayload);
    connect(block(), &Block::textColorChanged, this, &IconBlockContent::tintChanged);
    connect(&Theme::shared(), &Theme::changed, this, &IconBlockContent::tintChanged);
    readPayload();
    settleZoom();
}

void IconBlockContent::readPayload() {
    const QString name = block()->iconName();
    m_symbol = isSymbol(name) ? name : kUnknownSymbol;
    m_isFlippedHorizontally = block()->flipHorizontal();
    m_isFlippedVertically = block()->flipVertical();
    Q_EMIT symbolChanged();
}

QColor IconBlockContent::tint() const {
    // New icons are dark grey, which would be lost on dark paper.
    return SketchRenderer::shownColor(block()->textColor());
}

QString IconBlockContent::spokenText() const {
    const QString text = BlockBody::spokenText();
    return text.isEmpty() ? IconPickerView::spoken(m_symbol) : text;
}

void IconBlockContent::settleZoom() {
    BlockBody::settleZoom();
    const double side = std::clamp(std::min(width(), height()) * zoom(), 1.0, kLargestSide);
    if (m_shownSide != int(std::ceil(side))) {
        m_shownSide = int(std::ceil(side));
        Q_EMIT shownSideChanged();
    }
}

void IconBlockContent::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    BlockBody::geometryChange(newGeometry, oldGeometry);
    if (isComponentComplete()) {
        settleZoom();
        placePicker();
    }
}

void IconBlockContent::setIsEditing(bool isEditing) {
    if (isEditing && !m_picker) {
        openPicker();
    } else if (!isEditing && m_picker) {
        closePicker();
    }
    BlockBody::setIsEditing(isEditing);
}

void IconBlockContent::openPicker() {
    QQmlComponent component(qmlEngine(this), kPickerFile);
    QObject *object = component.beginCreate(qmlContext(&canvas()));
    m_picker = qobject_cast<IconPickerView *>(object);
    if (!m_picker) {
        qFatal("The panel of symbols could not be made: %s", qUtf8Printable(component.errorString()));
    }
    m_picker->setParentItem(&canvas());
    m_picker->setSize(canvas().size());
    m_picker->setCurrentName(m_symbol);
    placePicker();
    component.completeCreate();

    connect(&canvas(), &InfiniteCanvasView::viewportChanged, m_picker, [this] { placePicker(); });
    connect(m_picker, &IconPickerView::dismissed, this, [this] { viewModel().endEditing(); });
    connect(m_picker, &IconPickerView::selected, this, [this](const QString &name) {
        viewModel().setPayloadValue(*block(), QStringLiteral("iconName"), name);
        viewModel().endEditing();
    });
}

void IconBlockContent::closePicker() {
    // It may be in the middle of the key press that closes it.
    m_picker->disconnect(this);
    m_picker->setVisible(false);
    m_picker->deleteLater();
    m_picker = nullptr;
}

void IconBlockContent::placePicker() {
    if (m_picker) {
        m_picker->setSize(canvas().size());
        const QRectF onScreen = mapRectToItem(&canvas(), QRectF({0, 0}, size()));
        m_picker->setAside(onScreen.adjusted(-kPickerGap, 0, kPickerGap, 0));
    }
}

QQuickItem *IconBlockContent::inputItem() const {
    return m_picker ? m_picker->searchField() : nullptr;
}

} // namespace tallowby
