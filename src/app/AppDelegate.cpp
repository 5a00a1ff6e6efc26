#include "app/AppDelegate.h"

#include "app/LaunchAtLoginManager.h"
#include "app/PermissionManager.h"
#include "app/StatusItem.h"
#include "app/settings/SettingsWindowController.h"
#include "app/sync/SyncDotView.h"
#include "app/sync/SyncStatus.h"
#include "blocks/CanvasFactory.h"
#include "canvas/model/CanvasViewModel.h"
#include "flip/FlipEngine.h"
#include "flip/hotkey/HotkeyFormatter.h"
#include "flip/hotkey/HotkeyListener.h"
#include "platform/AppEvents.h"
#include "platform/Log.h"
#include "search/SearchOverlayView.h"
#include "storage/BlockStorage.h"
#include "storage/DebouncedSaver.h"
#include "sync/EmbeddingService.h"
#include "sync/NetworkHttpClient.h"
#include "sync/SyncEngine.h"

#include <QCoreApplication>
#include <QQuickItem>

namespace tallowby {

AppDelegate::AppDelegate()
    : m_supabaseConfig(SupabaseConfig::fromEnvironment())
    , m_platform(makeDesktopPlatform(m_scheduler))
    , m_settings(m_defaults, m_notifications, m_platform->displays())
    , m_launchAtLoginManager(std::make_unique<LaunchAtLoginManager>(m_platform->loginItem(), m_defaults))
    , m_syncStatus(std::make_unique<SyncStatus>(m_scheduler))
    , m_embeddings(std::make_unique<EmbeddingService>()) {
    m_qmlEngine.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    logLine(u"[AppDelegate] 🚀 Tallowby Ghost App launched");
    m_launchAtLoginManager->enableIfNeeded();
    m_permissionManager =
        std::make_unique<PermissionManager>(m_platform->accessibilityTrust(), m_notifications, m_scheduler);
    if (m_permissionManager->accessibilityState() == PermissionState::granted) {
        initializeApp();
    } else {
        showPermissionOnboarding();
    }
    m_permissionsGrantedObservation = m_notifications.observe(events::permissionsGranted, [this](const auto &) {
        logLine(u"[AppDelegate] ✅ Permissions granted, initializing app");
        initializeApp();
    });
    m_canvasReadyObservation = m_notifications.observe(
        events::canvasReady, [this](const Notification &notification) { canvasReady(notification); });
    m_firstFlipObservation =
        m_notifications.observe(events::flipComplete, [this](const Notification &) { onFirstFlip(); });
}

/// Not at launch: until the canvas has been seen once, neither blocks nor network are needed.
void AppDelegate::onFirstFlip() {
    if (m_syncEngine || !m_storage) {
        return;
    }
    m_httpClient = std::make_unique<NetworkHttpClient>(m_scheduler);
    m_syncEngine = std::make_unique<SyncEngine>(*m_storage, m_defaults, m_scheduler, *m_httpClient, *m_embeddings,
                                                m_supabaseConfig);
    connect(m_syncEngine.get(), &SyncEngine::remoteChangesMerged, m_canvasViewModel.get(),
            &CanvasViewModel::refreshBlocks);
    m_syncStatus->setEngine(m_syncEngine.get());
    m_searchOverlay->viewModel()->setSyncEngine(m_syncEngine.get());
    m_firstFlipObservation.stop();
    logLine(u"[AppDelegate] ✅ SyncEngine initialized on first flip");
}

void AppDelegate::initializeApp() {
    logLine(u"[AppDelegate] 🎬 Initializing Tallowby components...");
    m_hotkeyListener =
        std::make_unique<HotkeyListener>(m_notifications, m_settings, m_platform->hotKeys(), m_scheduler);
    m_hotkeyListener->start();
    m_flipEngine = std::make_unique<FlipEngine>(
        FlipServices{m_notifications, m_scheduler, m_settings, m_platform->workspace(), m_platform->presentation(),
                     m_platform->desktopCapture(), m_platform->motionPreference()},
        m_qmlEngine, [this] { return makeCanvas(); });
    setupStatusBarItem();
    logLine(u"[AppDelegate] ✅ Tallowby ready! Press ⌥ + Space to flip.");
    // The first press should be as quick as every other: what it needs is made while nobody waits for it.
    m_warmUp = m_scheduler.after(std::chrono::milliseconds(0), [this] { m_flipEngine->prepare(); });
}

void AppDelegate::showPermissionOnboarding() {
    logLine(u"[AppDelegate] ⚠️ Missing permissions, showing onboarding");
    logLine(QString(u"[AppDelegate] Status: " + m_permissionManager->statusDescription()));
    m_permissionManager->startMonitoringPermissions();
}

void AppDelegate::setupStatusBarItem() {
    m_statusItem = std::make_unique<StatusItem>();
    connect(m_statusItem.get(), &StatusItem::toggleRequested, this, [this] { handle(InstanceCommand::toggle); });
    connect(m_statusItem.get(), &StatusItem::settingsRequested, this, [this] { handle(InstanceCommand::settings); });
    connect(m_statusItem.get(), &StatusItem::quitRequested, this, [this] { handle(InstanceCommand::quit); });
}

void AppDelegate::openSettings() {
    if (!m_settingsWindowController) {
        m_settingsWindowController =
            std::make_unique<SettingsWindowController>(m_qmlEngine, m_settings, m_platform->displays(), *m_syncStatus);
    }
    m_settingsWindowController->show();
}

void AppDelegate::handle(InstanceCommand command) {
    switch (command) {
    case InstanceCommand::toggle:
        m_notifications.post(events::flipToggleRequested);
        return;
    case InstanceCommand::activate:
    case InstanceCommand::settings:
        openSettings();
        return;
    case InstanceCommand::quit:
        QCoreApplication::exit();
        return;
    }
}

void AppDelegate::canvasReady(const Notification &notification) {
    auto *view = notification.userInfo.value(events::canvasViewKey).value<QQuickItem *>();
    if (!view) {
        logLine(u"[AppDelegate] ⚠️ Canvas ready but no view provided");
        return;
    }
    logLine(u"[AppDelegate] 📦 Received Canvas view from Agent 2");
    if (m_flipEngine) {
        m_flipEngine->setTallowbyContent(view);
    }
}

QQuickItem *AppDelegate::makeCanvas() {
    m_storage = std::make_unique<BlockStorage>(m_scheduler, BlockStorage::defaultFilePath());
    m_debouncedSaver = std::make_unique<DebouncedSaver>(m_scheduler, *m_storage);
    m_canvasViewModel =
        std::make_unique<CanvasViewModel>(*m_storage, *m_debouncedSaver, m_notifications, m_scheduler, m_pasteboard);
    InfiniteCanvasView *view = makeCanvasView(m_qmlEngine, *m_canvasViewModel, m_notifications).release();
    view->setMotionPreference(&m_platform->motionPreference());
    SyncDotView::install(m_qmlEngine, *view, *m_syncStatus);
    m_searchOverlay =
        SearchOverlayView::install(m_qmlEngine, *view, {*m_storage, *m_embeddings, m_notifications, m_scheduler});
    const auto nameHotkey = [this, view] {
        view->setCloseShortcut(HotkeyFormatter::string(m_settings.hotkeyKeyCode(), m_settings.hotkeyModifiers()));
    };
    nameHotkey();
    connect(&m_settings, &AppSettings::hotkeyKeyCodeChanged, view, nameHotkey);
    connect(&m_settings, &AppSettings::hotkeyModifiersChanged, view, nameHotkey);
    return view;
}

void AppDelegate::applicationWillTerminate() {
    m_warmUp.cancel();
    if (m_hotkeyListener) {
        m_hotkeyListener->stop();
    }
    if (m_flipEngine) {
        m_flipEngine->cleanup();
    }
    if (m_syncEngine) {
        m_syncEngine->disconnect();
    }
    logLine(u"[AppDelegate] 👋 Tallowby Ghost App terminating");
}

} // namespace tallowby
