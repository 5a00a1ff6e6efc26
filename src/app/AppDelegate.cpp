#include "app/AppDelegate.h"

#include "app/LaunchAtLoginManager.h"
#include "app/LaunchHistory.h"
#include "app/PermissionManager.h"
#include "app/feedback/FeedbackWindowController.h"
#include "app/onboarding/IntroductionPrompt.h"
#include "app/onboarding/OnboardingWindowController.h"
#include "app/saving/NotesNotices.h"
#include "app/saving/SaveNoticeView.h"
#include "app/settings/SettingsWindowController.h"
#include "app/shell/MainMenu.h"
#include "app/shell/StartAtLogin.h"
#include "app/shell/StatusItem.h"
#include "app/sync/SyncDotView.h"
#include "app/sync/SyncStatus.h"
#include "app/update/UpdaterController.h"
#include "app/whatsnew/WhatsNewWindowController.h"
#include "blocks/CanvasFactory.h"
#include "canvas/model/CanvasViewModel.h"
#include "flip/FlipEngine.h"
#include "flip/hotkey/HotkeyAdvisor.h"
#include "flip/hotkey/HotkeyFormatter.h"
#include "flip/hotkey/HotkeyListener.h"
#include "guidance/CanvasTutorialOverlayView.h"
#include "media/UnusedRecordings.h"
#include "media/VideoRecordingService.h"
#include "media/VoiceRecordingService.h"
#include "platform/AppEvents.h"
#include "platform/ApplicationSupport.h"
#include "platform/Log.h"
#include "platform/desktop/ScreenLock.h"
#include "platform/desktop/StatusArea.h"
#include "platform/theme/Theme.h"
#include "platform/theme/ThemeImageProvider.h"
#include "search/SearchOverlayView.h"
#include "storage/BlockStorage.h"
#include "storage/DebouncedSaver.h"
#include "sync/EmbeddingService.h"
#include "sync/NetworkHttpClient.h"
#include "sync/SyncEngine.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSessionManager>

#include <utility>

namespace tallowby {

namespace {

const QString kLastSeenFeedbackSurveyVersionKey = QStringLiteral("lastSeenFeedbackSurveyVersion");
const QString kFeedbackSurveyVersion = QStringLiteral("v1");

/// Closes a window whose own button asked for it.
template <typename Controller>
void retire(std::unique_ptr<Controller> &controller) {
    if (Controller *const finished = controller.release()) {
        finished->window()->close();
        finished->deleteLater();
    }
}

} // namespace

AppDelegate::AppDelegate(const PlatformFactory &makePlatform)
    : m_dataFolderLock(applicationSupportFolder())
    , m_supabaseConfig(SupabaseConfig::fromEnvironment())
    , m_platform(makePlatform(m_scheduler))
    , m_settings(m_defaults, m_notifications, m_platform->displays())
    , m_motionPreference(m_settings, m_platform->motionPreference())
    , m_launchAtLoginManager(std::make_unique<LaunchAtLoginManager>(m_platform->loginItem(), m_defaults))
    , m_startAtLogin(std::make_unique<StartAtLogin>(*m_launchAtLoginManager))
    , m_hotkeyAdvisor(std::make_unique<HotkeyAdvisor>(m_settings, m_platform->hotKeys(), m_scheduler))
    , m_syncStatus(std::make_unique<SyncStatus>(m_scheduler))
    , m_embeddings(std::make_unique<EmbeddingService>())
    , m_notesNotices(std::make_unique<NotesNotices>(
          m_scheduler, [this] { return windowServices(); },
          [this] { return m_flipEngine && m_flipEngine->state() == FlipState::idle; })) {
    m_qmlEngine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    ThemeImageProvider::install(m_qmlEngine);
    const auto dress = [this] { Theme::shared().setAppearance(m_settings.appearance()); };
    dress();
    connect(&m_settings, &AppSettings::appearanceChanged, this, dress);
}

AppDelegate::~AppDelegate() {
    if (m_storage) {
        m_storage->status().disconnect(this); // Its own end may still save.
    }
    // Windows that the user is done with stand on what ends here.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void AppDelegate::takeNotes(const std::function<void()> &ready) {
    if (m_dataFolderLock.take() == DataFolderLock::Outcome::heldByOther) {
        setupMainMenu();
        m_notesNotices->showInUse(m_dataFolderLock, ready);
    } else {
        ready();
    }
}

void AppDelegate::applicationDidFinishLaunching() {
    logLine(u"[AppDelegate] 🚀 Tallowby Ghost App launched");
    setupMainMenu();
    // The desktop asks before it ends the session, and may end it at once after the answer.
    connect(
        qGuiApp, &QGuiApplication::commitDataRequest, this, [this] { saveNotes(); }, Qt::DirectConnection);
    m_launchAtLoginManager->enableIfNeeded();
    m_updaterController = std::make_unique<UpdaterController>(
        windowServices(), [this]() -> HttpClient & { return httpClient(); },
        UpdateSource::ofThisBuild(QCoreApplication::applicationFilePath()), QCoreApplication::applicationVersion());
    m_updaterController->startUpdater();
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
    m_flipCompleteObservation = m_notifications.observe(events::flipComplete, [this](const auto &) {
        if (m_waitingWindow || std::exchange(m_wasLockedInTurn, false) || m_platform->screenLock().isDrawn()) {
            m_notifications.post(events::canvasCloseRequested);
        }
    });
    // Whoever comes back to a locked screen finds the desktop, not what was being written.
    connect(&m_platform->screenLock(), &ScreenLock::drawn, this, [this] {
        m_wasLockedInTurn = m_flipEngine && m_flipEngine->state() == FlipState::animating;
        m_notifications.post(events::canvasCloseRequested);
    });
    m_flipClosedObservation = m_notifications.observe(events::flipClosed, [this](const auto &) {
        openWaitingWindow();
        m_notesNotices->showWaiting();
    });
}

/// Not at launch: until the canvas has been seen once, neither blocks nor network are needed.
void AppDelegate::onFirstFlip() {
    if (m_syncEngine || !m_storage) {
        return;
    }
    m_syncEngine = std::make_unique<SyncEngine>(*m_storage, m_defaults, m_scheduler, httpClient(), *m_embeddings,
                                                m_supabaseConfig);
    connect(m_syncEngine.get(), &SyncEngine::remoteChangesMerged, m_canvasViewModel.get(),
            &CanvasViewModel::refreshBlocks);
    m_syncStatus->setEngine(m_syncEngine.get());
    m_searchOverlay->viewModel()->setSyncEngine(m_syncEngine.get());
    m_firstFlipObservation.stop();
    logLine(u"[AppDelegate] ✅ SyncEngine initialized on first flip");
}

HttpClient &AppDelegate::httpClient() {
    if (!m_httpClient) {
        m_httpClient = std::make_unique<NetworkHttpClient>(m_scheduler);
    }
    return *m_httpClient;
}

void AppDelegate::initializeApp() {
    logLine(u"[AppDelegate] 🎬 Initializing Tallowby components...");
    m_hotkeyListener =
        std::make_unique<HotkeyListener>(m_notifications, m_settings, m_platform->hotKeys(), m_scheduler);
    m_hotkeyListener->start();
    m_hotkeyAdvisor->setListener(m_hotkeyListener.get());
    m_flipEngine = std::make_unique<FlipEngine>(FlipServices{m_notifications, m_scheduler, m_settings,
                                                             m_platform->workspace(), m_platform->presentation(),
                                                             m_platform->desktopCapture(), m_motionPreference},
                                                m_qmlEngine, [this] { return makeCanvas(); });
    setupStatusBarItem();
    checkForPostUpdateScreens();
    logLine(u"[AppDelegate] ✅ Tallowby ready! Press ⌥ + Space to flip.");
    // The first press should be as quick as every other: what it needs is made while nobody waits for it.
    m_warmUp = m_scheduler.after(std::chrono::milliseconds(0), [this] { m_flipEngine->prepare(); });
}

void AppDelegate::setupMainMenu() {
    if (m_mainMenu) {
        return;
    }
    m_mainMenu = std::make_unique<MainMenu>(QList<MainMenuItem>{
        {tr("Settings…"), Qt::CTRL | Qt::Key_Comma, false, [this] { handle(InstanceCommand::settings); }},
        {tr("Send Feedback…"), {}, false, [this] { onDesktop([this] { openFeedbackSurvey(); }); }},
        {tr("Quit Tallowby"), Qt::CTRL | Qt::Key_Q, true, [this] { handle(InstanceCommand::quit); }}});
    m_mainMenu->install(m_qmlEngine);
}

void AppDelegate::showPermissionOnboarding() {
    logLine(u"[AppDelegate] ⚠️ Missing permissions, showing onboarding");
    logLine(QString(u"[AppDelegate] Status: " + m_permissionManager->statusDescription()));
    m_permissionManager->startMonitoringPermissions();
    openOnboarding();
}

void AppDelegate::checkForPostUpdateScreens() {
    const LaunchKind launch = noteLaunch(m_defaults, QCoreApplication::applicationVersion());
    m_introductionPrompt = std::make_unique<IntroductionPrompt>(m_defaults, *m_hotkeyAdvisor, [this] {
        if (m_flipEngine->state() == FlipState::idle) {
            openOnboarding();
        }
    });
    m_introductionPrompt->begin(launch);
    switch (launch) {
    case LaunchKind::first:
        return;
    case LaunchKind::sameVersion:
        checkForFeedbackPrompt();
        return;
    case LaunchKind::otherVersion:
        openWhatsNew();
        return;
    }
}

/// Offered once for each version of the survey, however it is closed.
void AppDelegate::checkForFeedbackPrompt() {
    if (m_defaults.string(kLastSeenFeedbackSurveyVersionKey) == kFeedbackSurveyVersion) {
        return;
    }
    m_defaults.setString(kLastSeenFeedbackSurveyVersionKey, kFeedbackSurveyVersion);
    openFeedbackSurvey();
}

void AppDelegate::setupStatusBarItem() {
    m_statusItem = std::make_unique<StatusItem>(
        m_platform->statusArea(),
        StatusItemActions{.toggle = [this] { handle(InstanceCommand::toggle); },
                          .openSettings = [this] { handle(InstanceCommand::settings); },
                          .sendFeedback = [this] { onDesktop([this] { openFeedbackSurvey(); }); },
                          .checkForUpdates = [this] { onDesktop([this] { m_updaterController->checkForUpdates(); }); },
                          .quit = [this] { handle(InstanceCommand::quit); }});
    updateSaveStatus();
}

void AppDelegate::openSettings() {
    if (!m_settingsWindowController) {
        m_settingsWindowController = std::make_unique<SettingsWindowController>(
            windowServices(),
            SettingsServices{m_settings, m_platform->displays(), m_platform->motionPreference(), *m_hotkeyAdvisor,
                             *m_startAtLogin, *m_syncStatus, [this] { openOnboarding(); }, [this] { openWhatsNew(); },
                             [this] { m_updaterController->checkForUpdates(); }});
    }
    m_settingsWindowController->show();
}

void AppDelegate::openOnboarding() {
    if (!m_onboardingWindowController) {
        m_onboardingWindowController = std::make_unique<OnboardingWindowController>(
            windowServices(),
            OnboardingServices{*m_permissionManager, m_settings, m_notifications, m_motionPreference, *m_hotkeyAdvisor,
                               *m_startAtLogin, [this] { return m_canvasViewModel && !m_canvasViewModel->isEmpty(); },
                               [this] { retire(m_onboardingWindowController); }});
    }
    m_onboardingWindowController->show();
}

void AppDelegate::openWhatsNew() {
    if (!m_whatsNewWindowController) {
        m_whatsNewWindowController = std::make_unique<WhatsNewWindowController>(
            windowServices(), [this] { retire(m_whatsNewWindowController); });
    }
    m_whatsNewWindowController->show();
}

void AppDelegate::openFeedbackSurvey() {
    if (!m_feedbackSurvey) {
        m_feedbackService =
            std::make_unique<FeedbackService>(httpClient(), m_supabaseConfig, QCoreApplication::applicationVersion());
        m_feedbackSurvey = std::make_unique<FeedbackSurvey>(*m_feedbackService, m_platform->audio(), m_scheduler);
    }
    if (!m_feedbackWindowController) {
        m_feedbackWindowController = std::make_unique<FeedbackWindowController>(
            windowServices(), *m_feedbackSurvey, [this] { retire(m_feedbackWindowController); });
    }
    m_feedbackWindowController->show();
}

void AppDelegate::onDesktop(std::function<void()> open) {
    if (!m_flipEngine || m_flipEngine->state() == FlipState::idle) {
        open();
        return;
    }
    m_waitingWindow = std::move(open);
    m_notifications.post(events::canvasCloseRequested);
}

void AppDelegate::openWaitingWindow() {
    if (const auto open = std::exchange(m_waitingWindow, nullptr)) {
        // The turn ends with this notification; a window that it opened would be part of it.
        m_windowOpening = m_scheduler.after(Scheduler::Duration::zero(), open);
    }
}

WindowServices AppDelegate::windowServices() {
    return {m_qmlEngine, m_platform->presentation(), *m_mainMenu};
}

void AppDelegate::handle(InstanceCommand command) {
    switch (command) {
    case InstanceCommand::toggle:
        if (!m_flipEngine) {
            openOnboarding(); // It says what the turn still waits for.
            return;
        }
        m_notifications.post(events::flipToggleRequested);
        return;
    case InstanceCommand::activate:
    case InstanceCommand::settings:
        onDesktop([this] { openSettings(); });
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
    connect(m_storage.get(), &BlockStorage::blocksMerged, m_canvasViewModel.get(), &CanvasViewModel::refreshBlocks);
    connect(&m_storage->status(), &SaveStatus::changed, this, &AppDelegate::updateSaveStatus);
    m_voiceRecording = std::make_unique<VoiceRecordingService>(m_platform->audio(), *m_storage, m_scheduler);
    m_voiceRecording->share();
    m_sessionQueue = std::make_unique<ThreadSessionQueue>(m_scheduler);
    m_videoRecording =
        std::make_unique<VideoRecordingService>(m_platform->video(), *m_sessionQueue, *m_storage, m_scheduler);
    m_videoRecording->share();
    m_unusedRecordings = std::make_unique<UnusedRecordings>(*m_storage, m_dataFolderLock, m_scheduler);
    InfiniteCanvasView *view = makeCanvasView(m_qmlEngine, *m_canvasViewModel, m_notifications).release();
    view->setMotionPreference(&m_motionPreference);
    SyncDotView::install(m_qmlEngine, *view, *m_syncStatus);
    SaveNoticeView::install(m_qmlEngine, *view, m_storage->status());
    updateSaveStatus();
    m_notesNotices->follow(*m_storage);
    m_searchOverlay =
        SearchOverlayView::install(m_qmlEngine, *view, {*m_storage, *m_embeddings, m_notifications, m_scheduler});
    CanvasTutorialOverlayView::install(m_qmlEngine, *view, m_defaults);
    const auto nameHotkey = [this, view] {
        view->setCloseShortcut(m_hotkeyAdvisor->isAssigned()
                                   ? m_hotkeyAdvisor->combination()
                                   : HotkeyFormatter::string(m_settings.hotkeyKeyCode(), m_settings.hotkeyModifiers()));
    };
    nameHotkey();
    connect(m_hotkeyAdvisor.get(), &HotkeyAdvisor::changed, view, nameHotkey);
    return view;
}

void AppDelegate::updateSaveStatus() {
    if (m_storage && m_statusItem) {
        m_statusItem->setProblem(m_storage->status().text());
    }
}

/// Whatever a person has begun and the program ends in the middle of becomes part of the notes here, before the last
/// save.
void AppDelegate::finishWhatIsUnderWay() {
    if (m_canvasViewModel) {
        // Takes composed words into the text that is being edited, and removes a new text that is still empty.
        m_canvasViewModel->endEditing();
    }
    if (m_voiceRecording) {
        m_voiceRecording->stopRecording();
    }
}

void AppDelegate::saveNotes() {
    if (m_storage) {
        m_debouncedSaver->flush();
        m_storage->saveNow();
    }
}

void AppDelegate::applicationWillTerminate() {
    m_warmUp.cancel();
    finishWhatIsUnderWay();
    saveNotes();
    if (m_hotkeyListener) {
        m_hotkeyListener->stop();
    }
    if (m_flipEngine) {
        m_flipEngine->cleanup();
    }
    if (m_syncEngine) {
        m_syncEngine->disconnect();
    }
    saveNotes(); // Nothing is left to write, unless the end itself has changed something.
    logLine(u"[AppDelegate] 👋 Tallowby Ghost App terminating");
}

} // namespace tallowby
