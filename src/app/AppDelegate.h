#pragma once

#include "platform/AppSettings.h"
#include "platform/NotificationCenter.h"
#include "platform/QtPasteboard.h"
#include "platform/QtScheduler.h"
#include "platform/UserDefaults.h"
#include "platform/UserMotionPreference.h"
#include "platform/desktop/DesktopPlatform.h"
#include "platform/desktop/InstanceBus.h"
#include "storage/DataFolderLock.h"
#include "sync/SupabaseConfig.h"

#include <QObject>
#include <QQmlEngine>

#include <functional>
#include <memory>

class QQuickItem;

namespace tallowby {

class BlockStorage;
class CanvasViewModel;
class DebouncedSaver;
class EmbeddingService;
class FeedbackService;
class FeedbackSurvey;
class FeedbackWindowController;
class FlipEngine;
class HotkeyAdvisor;
class HotkeyListener;
class HttpClient;
class IntroductionPrompt;
class LaunchAtLoginManager;
class MainMenu;
class NotesNotices;
class OnboardingWindowController;
class PermissionManager;
class SettingsWindowController;
class SearchOverlayView;
class SessionQueue;
class StartAtLogin;
class StatusItem;
class SyncEngine;
class SyncStatus;
class UnusedRecordings;
class UpdaterController;
class VideoRecordingService;
class VoiceRecordingService;
class WhatsNewWindowController;
struct WindowServices;

/// The composition root: makes every component, hands each what it needs, and ends them in order. Main thread only.
/// Members stand in the order in which they are made.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// Makes the services of the desktop that the program runs on.
    using PlatformFactory = std::function<std::unique_ptr<DesktopPlatform>(Scheduler &)>;

    explicit AppDelegate(const PlatformFactory &makePlatform = makeDesktopPlatform);
    ~AppDelegate() override;

    /// Makes sure that no other program has the same notes open, then calls `ready`. Where one has, a window says so,
    /// and `ready` is called when that has changed; the program ends if the window is closed.
    void takeNotes(const std::function<void()> &ready);
    /// The start-up sequence. Called once, when the event loop is about to run.
    void applicationDidFinishLaunching();
    /// The orderly end, before the application object goes.
    void applicationWillTerminate();
    /// Writes what the file of notes does not have yet, and waits for it. May be called at any time.
    void saveNotes();
    /// What another start of the program, a signal or a menu asks for.
    void handle(InstanceCommand command);

    /// Null until the interactive components are made, or the canvas is.
    [[nodiscard]] FlipEngine *flipEngine() const { return m_flipEngine.get(); }
    [[nodiscard]] CanvasViewModel *canvasViewModel() const { return m_canvasViewModel.get(); }
    /// Null until they are shown.
    [[nodiscard]] OnboardingWindowController *onboarding() const { return m_onboardingWindowController.get(); }
    [[nodiscard]] WhatsNewWindowController *whatsNew() const { return m_whatsNewWindowController.get(); }
    [[nodiscard]] FeedbackWindowController *feedback() const { return m_feedbackWindowController.get(); }
    [[nodiscard]] SettingsWindowController *settingsWindow() const { return m_settingsWindowController.get(); }

private:
    void initializeApp();
    void setupMainMenu();
    void showPermissionOnboarding();
    void checkForPostUpdateScreens();
    void checkForFeedbackPrompt();
    void setupStatusBarItem();
    void openSettings();
    void openFeedbackSurvey();
    void openOnboarding();
    void openWhatsNew();
    /// Opens a window once the desktop is back: over the canvas nothing else is seen.
    void onDesktop(std::function<void()> open);
    void openWaitingWindow();
    [[nodiscard]] WindowServices windowServices();
    void updateSaveStatus();
    void finishWhatIsUnderWay();
    void canvasReady(const Notification &notification);
    void onFirstFlip();
    [[nodiscard]] HttpClient &httpClient();
    [[nodiscard]] QQuickItem *makeCanvas();

    QtScheduler m_scheduler;
    NotificationCenter m_notifications;
    UserDefaults m_defaults;
    DataFolderLock m_dataFolderLock;
    const SupabaseConfig m_supabaseConfig;
    std::unique_ptr<DesktopPlatform> m_platform;
    AppSettings m_settings;
    UserMotionPreference m_motionPreference;
    std::unique_ptr<LaunchAtLoginManager> m_launchAtLoginManager;
    std::unique_ptr<StartAtLogin> m_startAtLogin;
    std::unique_ptr<HotkeyAdvisor> m_hotkeyAdvisor;
    std::unique_ptr<PermissionManager> m_permissionManager;

    QQmlEngine m_qmlEngine;
    std::unique_ptr<MainMenu> m_mainMenu;

    // What the canvas needs, made when it is first needed: a start reads no blocks.
    QtPasteboard m_pasteboard;
    std::unique_ptr<BlockStorage> m_storage;
    std::unique_ptr<DebouncedSaver> m_debouncedSaver;
    std::unique_ptr<CanvasViewModel> m_canvasViewModel;
    std::unique_ptr<VoiceRecordingService> m_voiceRecording;
    std::unique_ptr<SessionQueue> m_sessionQueue;
    std::unique_ptr<VideoRecordingService> m_videoRecording;
    std::unique_ptr<UnusedRecordings> m_unusedRecordings;
    std::unique_ptr<SyncStatus> m_syncStatus;
    std::unique_ptr<EmbeddingService> m_embeddings;
    /// The canvas owns it.
    SearchOverlayView *m_searchOverlay = nullptr;

    std::unique_ptr<HotkeyListener> m_hotkeyListener;
    std::unique_ptr<FlipEngine> m_flipEngine;
    std::unique_ptr<HttpClient> m_httpClient;
    std::unique_ptr<SyncEngine> m_syncEngine;
    std::unique_ptr<FeedbackService> m_feedbackService;
    std::unique_ptr<FeedbackSurvey> m_feedbackSurvey;
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<IntroductionPrompt> m_introductionPrompt;
    std::unique_ptr<OnboardingWindowController> m_onboardingWindowController;
    std::unique_ptr<WhatsNewWindowController> m_whatsNewWindowController;
    std::unique_ptr<FeedbackWindowController> m_feedbackWindowController;
    std::unique_ptr<UpdaterController> m_updaterController;
    std::unique_ptr<SettingsWindowController> m_settingsWindowController;
    std::unique_ptr<NotesNotices> m_notesNotices;
    std::function<void()> m_waitingWindow;
    bool m_wasLockedInTurn = false;

    ScheduledCall m_warmUp;
    ScheduledCall m_windowOpening;
    NotificationCenter::Observation m_permissionsGrantedObservation;
    NotificationCenter::Observation m_canvasReadyObservation;
    NotificationCenter::Observation m_flipCompleteObservation;
    NotificationCenter::Observation m_flipClosedObservation;
    NotificationCenter::Observation m_firstFlipObservation;
};

} // namespace tallowby
