#include "canvas/view/ImagePicker.h"

#include "canvas/view/InfiniteCanvasView.h"
#include "platform/theme/Theme.h"

#include <QDir>
#include <QQmlComponent>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QUrl>

#include <utility>

namespace tallowby {

namespace {

/// The dialogue takes its colours from the window that it lies in. It is light in the dark, too: Qt draws parts of it
/// white, whatever the palette says, and what is written on them has to be read.
void dress(QQuickWindow &window) {
    const QColor grey(Qt::lightGray);
    const std::pair<const char *, QColor> colors[] = {
        {"window", Qt::white},
        {"windowText", Qt::black},
        {"base", Qt::white},
        {"text", Qt::black},
        {"button", grey.lighter(120)},
        {"buttonText", Qt::black},
        {"light", Qt::white},
        {"midlight", grey.lighter(120)},
        {"mid", grey},
        {"dark", Qt::darkGray},
        {"placeholderText", Qt::gray},
        {"highlight", Theme::shared().accent()},
        {"highlightedText", Qt::black},
    };
    if (auto *palette = window.property("palette").value<QObject *>()) {
        for (const auto &[role, color] : colors) {
            palette->setProperty(role, color);
        }
    }
}

QUrl picturesFolder() {
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QUrl::fromLocalFile(QDir(pictures).exists() ? pictures : QDir::homePath());
}

} // namespace

ImagePicker::ImagePicker(InfiniteCanvasView &view)
    : m_view(view) {
    // It lies in the window, not on the canvas: it would float over the card that turns.
    connect(&view, &InfiniteCanvasView::turningAway, this, &ImagePicker::close);
}

ImagePicker::~ImagePicker() = default;

bool ImagePicker::prepare(const Chosen &chosen) {
    m_chosen = chosen;
    if (!m_dialog) {
        // Made when it is first asked for: its views take longer to load than the whole canvas.
        QQmlComponent component(qmlEngine(&m_view),
                                QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/Canvas/ImagePickerDialog.qml")));
        m_dialog.reset(component.create());
        if (!m_dialog) {
            qWarning("The dialogue for pictures could not be made: %s", qUtf8Printable(component.errorString()));
            return false;
        }
        m_dialog->setProperty("currentFolder", picturesFolder());
        connect(m_dialog.get(), SIGNAL(accepted()), this, SLOT(handOver()));
        connect(m_dialog.get(), SIGNAL(visibleChanged()), this, SLOT(giveBackFocus()));
    }
    return true;
}

void ImagePicker::open(const Chosen &chosen) {
    if (prepare(chosen)) {
        m_dialog->setProperty("isSaving", false);
        show();
    }
}

void ImagePicker::openToSave(const QString &fileName, const Chosen &chosen) {
    if (prepare(chosen)) {
        m_dialog->setProperty("isSaving", true);
        const QUrl folder = m_dialog->property("currentFolder").toUrl();
        m_dialog->setProperty("selectedFile", QUrl(folder.toString() + u'/' + fileName));
        show();
    }
}

void ImagePicker::show() {
    dress(*m_view.window());
    m_dialog->setProperty("parentWindow", QVariant::fromValue<QWindow *>(m_view.window()));
    QMetaObject::invokeMethod(m_dialog.get(), "open");
}

void ImagePicker::close() {
    if (m_dialog && m_dialog->property("visible").toBool()) {
        QMetaObject::invokeMethod(m_dialog.get(), "close");
    }
}

void ImagePicker::handOver() {
    m_chosen(m_dialog->property("selectedFile").toUrl());
}

void ImagePicker::giveBackFocus() {
    if (!m_dialog->property("visible").toBool()) {
        m_view.forceActiveFocus();
    }
}

} // namespace tallowby
