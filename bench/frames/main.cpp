#include "frames/AgentProbe.h"
#include "frames/FlipProbe.h"
#include "frames/SceneProbe.h"
#include "frames/Scenes.h"

#include "app/QmlTypes.h"
#include "platform/Log.h"
#include "platform/scene/SceneGraph.h"
#include "support/XSession.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>
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

/// Each scene in a process of its own, so that none finds what another has warmed up or left behind.
int runAllScenes(const QStringList &arguments) {
    for (const QString &name : tallowby::bench::sceneNames()) {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(QCoreApplication::applicationFilePath(),
                      arguments.mid(1) + QStringList{QStringLiteral("--scene"), name});
        if (!process.waitForFinished(-1) || process.exitCode() != 0) {
            QTextStream(stderr) << "The scene could not be measured: " << name << Qt::endl;
            return 1;
        }
    }
    return 0;
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
        "milliseconds, as one line of JSON.\n\n"
        "With --scene it measures work on the canvas instead, one line a scene. first_interactive_frame_ms is from the "
        "first hot key of a fresh process, pressed as soon as that listens, to the return of the buffer swap of the "
        "first frame with the window active and the keyboard focus on the canvas: the next key would be handled. The "
        "blocks are read in between. A step of a pan (8 pixels; 120 there, 120 back) or of the zoom sweep (4 %, 0.25 "
        "to 3) is one touchpad wheel event handed to the window, and takes until the buffer swap of the frame that "
        "shows it returns. Letters are real keys. Processor time is that of all threads of this process, without the "
        "X server. QT_QUICK_BACKEND=software measures the painted scene graph."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption blocks(QStringLiteral("blocks"), QStringLiteral("A canvas file to open."),
                                    QStringLiteral("file"));
    const QCommandLineOption turns(QStringLiteral("turns"), QStringLiteral("Turns to measure (8)."),
                                   QStringLiteral("count"), QStringLiteral("8"));
    const QCommandLineOption keys(QStringLiteral("keys"), QStringLiteral("Letters to type (30)."),
                                  QStringLiteral("count"), QStringLiteral("30"));
    const QCommandLineOption idle(QStringLiteral("idle"), QStringLiteral("Seconds to watch the program at rest (20)."),
                                  QStringLiteral("seconds"), QStringLiteral("20"));
    const QCommandLineOption scene(QStringLiteral("scene"),
                                   QStringLiteral("Measure work on a generated scene (%1, all) or, with --blocks, on "
                                                  "that file (file).")
                                       .arg(tallowby::bench::sceneNames().join(QStringLiteral(", "))),
                                   QStringLiteral("name"));
    const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("Of the generated scene (1)."),
                                  QStringLiteral("number"), QStringLiteral("1"));
    parser.addOptions({blocks, turns, keys, idle, scene, seed});
    if (!parser.parse(arguments) || parser.isSet(help)) {
        QTextStream(parser.isSet(help) ? stdout : stderr)
            << parser.errorText() << (parser.isSet(help) ? QString() : QStringLiteral("\n")) << parser.helpText();
        return parser.isSet(help) ? 0 : 2;
    }
    if (parser.value(scene) == QStringLiteral("all")) {
        const QCoreApplication application(argc, argv);
        arguments.removeAll(QStringLiteral("--scene=all"));
        if (const qsizetype at = arguments.indexOf(QStringLiteral("--scene")); at >= 0) {
            arguments.remove(at, 2);
        }
        return runAllScenes(arguments);
    }
    auto generated = tallowby::bench::sceneByName(parser.value(scene));
    const bool isFileMeasured = parser.value(scene) == QStringLiteral("file") && parser.isSet(blocks);
    if (parser.isSet(scene) && !generated && !isFileMeasured) {
        QTextStream(stderr) << "There is no such scene: " << parser.value(scene) << Qt::endl;
        return 2;
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

    if (generated) {
        generated->seed = parser.value(seed).toUInt();
        const QString folder = qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Tallowby");
        QDir().mkpath(folder);
        tallowby::bench::writeSceneFile(*generated, folder + QStringLiteral("/blocks.json"));
    }

    QCoreApplication::setApplicationName(QStringLiteral("Tallowby"));
    QQuickWindow::setDefaultAlphaBuffer(true);
    QApplication application(argc, argv);
    tallowby::chooseSceneGraph();
    QApplication::setQuitOnLastWindowClosed(false);
    tallowby::setLogSink([](const QString &) {});
    tallowby::registerQmlTypes();

    QJsonObject result{
        {QStringLiteral("blocks"), parser.value(blocks)},
        {QStringLiteral("screen"), QStringLiteral("%1x%2").arg(kScreenSize.width()).arg(kScreenSize.height())}};
    if (parser.isSet(scene)) {
        result.insert(QStringLiteral("scene"), parser.value(scene));
        tallowby::bench::SceneProbe probe(session.display());
        result.insert(QStringLiteral("work"), probe.run(parser.value(keys).toInt(), parser.value(idle).toInt()));
        QTextStream(stdout) << QJsonDocument(result).toJson(QJsonDocument::Compact) << Qt::endl;
        return 0;
    }
    result.insert(
        QStringLiteral("agent"),
        tallowby::bench::probeAgent(QCoreApplication::applicationDirPath() + u"/tallowby", parser.value(idle).toInt()));
    placeBlocks(parser.value(blocks));
    tallowby::bench::FlipProbe probe(session.display());
    result.insert(QStringLiteral("flip"), probe.run(parser.value(turns).toInt(), parser.value(keys).toInt()));
    QTextStream(stdout) << QJsonDocument(result).toJson(QJsonDocument::Compact) << Qt::endl;
    return 0;
}
