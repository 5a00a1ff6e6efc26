#include "app/SelfTest.h"

#include "app/QmlTypes.h"

#include <QApplication>
#include <QDirIterator>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTemporaryDir>
#include <QTextStream>

#include <atomic>
#include <cstdio>

namespace tallowby {

namespace {

std::atomic<int> warningCount = 0;

void countWarnings(QtMsgType type, const QMessageLogContext &, const QString &message) {
    if (type != QtDebugMsg && type != QtInfoMsg) {
        ++warningCount;
    }
    std::fprintf(stderr, "%s\n", qUtf8Printable(message));
}

} // namespace

int runSelfTest(int argc, char **argv) {
    const QTemporaryDir home;
    for (const char *folder : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"}) {
        qputenv(folder, home.path().toLocal8Bit());
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qInstallMessageHandler(countWarnings);
    const QApplication application(argc, argv);
    registerQmlTypes();

    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    int loaded = 0;
    int failed = 0;
    QDirIterator files(QStringLiteral(":/qt/qml/Tallowby"), {QStringLiteral("*.qml")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        const QQmlComponent component(&engine, QUrl(u"qrc" + file));
        if (component.isReady()) {
            ++loaded;
        } else {
            ++failed;
            std::fprintf(stderr, "%s\n", qUtf8Printable(component.errorString()));
        }
    }
    QTextStream(stdout) << QStringLiteral("Self-test: %1 types loaded, %2 failed, %3 warnings")
                               .arg(loaded)
                               .arg(failed)
                               .arg(warningCount.load())
                        << Qt::endl;
    return loaded > 0 && failed == 0 && warningCount == 0 ? 0 : 1;
}

} // namespace tallowby
