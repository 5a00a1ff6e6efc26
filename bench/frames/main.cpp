#include "frames/AgentProbe.h"
#include "frames/FlipProbe.h"

#include "app/QmlTypes.h"
#include "platform/Log.h"
#include "support/XSession.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QQuickWindow>
#include <QTextStream>

namespace {

constexpr QSize kScreenSize{1920, 1080};

/// Puts the canvas file where the program will look for it.
bool placeBlocks(const QString &source) {
    const QString folder = qEnvironmentVariable("XDG_DATA_HOME") + u"/Tallowby";
    const QString target = folder + u"/blocks.json";
    QFile::remove(target);
    return source.isEmpty() || (QDir().mkpath(folder) && QFile::copy(source, target));
}

} // namespace

int main(int argc, char **argv) {
    // A desktop of its own, unless the caller asks for the one that it is on: what runs there would be measured too.
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments << QString::fromLocal8Bit(argv[i]);
    }
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Drives the canvas window of the program with real keys on an X server of its own and prints what it took, in "
        "milliseconds, as one line of JSON."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption blocks(QStringLiteral("blocks"), QStringLiteral("A canvas file to open."),
                                    QStringLiteral("file"));
    const QCommandLineOption turns(QStringLiteral("turns"), QStringLiteral("Turns to measure (8)."),
                                   QStringLiteral("count"), QStringLiteral("8"));
    const QCommandLineOption keys(QStringLiteral("keys"), QStringLiteral("Letters to type (30)."),
                                  QStringLiteral("count"), QStringLiteral("30"));
    const QCommandLineOption idle(QStringLiteral("idle"), QStringLiteral("Seconds to watch the program at rest (20)."),
                                  QStringLiteral("seconds"), QStringLiteral("20"));
    parser.addOptions({blocks, turns, keys, idle});
    if (!parser.parse(arguments) || parser.isSet(help)) {
        QTextStream(parser.isSet(help) ? stdout : stderr)
            << parser.errorText() << (parser.isSet(help) ? QString() : QStringLiteral("\n")) << parser.helpText();
        return parser.isSet(help) ? 0 : 2;
    }

    tallowby::test::XSession session({.screenSize = kScreenSize, .windowManager = true, .messageBus = true});
    if (!session.error().isEmpty()) {
        QTextStream(stderr) << session.error() << Qt::endl;
        return 1;
    }
    session.adoptEnvironment();
    if (!placeBlocks(parser.value(blocks))) {
        QTextStream(stderr) << "The canvas file cannot be copied: " << parser.value(blocks) << Qt::endl;
        return 1;
    }

    QCoreApplication::setApplicationName(QStringLiteral("Tallowby"));
    QQuickWindow::setDefaultAlphaBuffer(true);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    tallowby::setLogSink([](const QString &) {});
    tallowby::registerQmlTypes();

    QJsonObject result{
        {QStringLiteral("blocks"), parser.value(blocks)},
        {QStringLiteral("screen"), QStringLiteral("%1x%2").arg(kScreenSize.width()).arg(kScreenSize.height())}};
    result.insert(
        QStringLiteral("agent"),
        tallowby::bench::probeAgent(QCoreApplication::applicationDirPath() + u"/tallowby", parser.value(idle).toInt()));
    placeBlocks(parser.value(blocks));
    tallowby::bench::FlipProbe probe(session.display());
    result.insert(QStringLiteral("flip"), probe.run(parser.value(turns).toInt(), parser.value(keys).toInt()));
    QTextStream(stdout) << QJsonDocument(result).toJson(QJsonDocument::Compact) << Qt::endl;
    return 0;
}
