#pragma once

#include "platform/AppSettings.h"
#include "platform/NotificationCenter.h"
#include "platform/QtPasteboard.h"
#include "platform/QtScheduler.h"
#include "platform/UserDefaults.h"
#include "platform/desktop/DesktopPlatform.h"
#include "platform/desktop/InstanceBus.h"
#include "sync/SupabaseConfig.h"

#include <QObject>
#include <QQmlEngine>

#include <memory>

class QQuickItem;

namespace tallowby {

class BlockStorage;
class CanvasViewModel;
class DebouncedSaver;
class EmbeddingService;
class FlipEngine;
class HotkeyListener;
class HttpClient;
class LaunchAtLoginManager;
class PermissionManager;
class SettingsWindowController;
class SearchOverlayView;
class StatusItem;
class SyncEngine;
class SyncStatus;

/// The composition root: makes every component, hands each what it needs, and ends them in order. Main thread only.
/// Members stand in the order in which they are made.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    AppDelegate();
    ~AppDelegate() override;

    /// The start-up sequence. Called once, when the event loop is about to run.
    void applicationDidFinishLaunching();
    /// The orderly end, before the application object goes.
    void applicationWillTerminate();
    /// What another start of the program, a signal or a menu asks for.
    void handle(InstanceCommand command);

    /// Null until the interactive components are made, or the canvas is.
    [[nodiscard]] FlipEngine *flipEngine() const { return m_flipEngine.get(); }
    [[nodiscard]] CanvasViewModel *canvasViewModel() const { return m_canvasViewModel.get(); }

private:
    void initializeApp();
    void showPermissionOnboarding();
    void setupStatusBarItem();
    void openSettings();
    void canvasReady(const Notification &notification);
    void onFirstFlip();
    [[nodiscard]] QQuickItem *makeCanvas();

    QtScheduler m_scheduler;
    NotificationCenter m_notifications;
    UserDefaults m_defaults;
    const SupabaseConfig m_supabaseConfig;
    std::unique_ptr<DesktopPlatform> m_platform;
    AppSettings m_settings;
    std::unique_ptr<LaunchAtLoginManager> m_launchAtLoginManager;
    std::unique_ptr<PermissionManager> m_permissionManager;

    // What the canvas needs, made when it is first needed: a start reads no blocks.
    QQmlEngine m_qmlEngine;
    QtPasteboard m_pasteboard;
    std::unique_ptr<BlockStorage> m_storage;
    std::unique_ptr<DebouncedSaver> m_debouncedSaver;
    std::unique_ptr<CanvasViewModel> m_canvasViewModel;
    std::unique_ptr<SyncStatus> m_syncStatus;
    std::unique_ptr<EmbeddingService> m_embeddings;
    /// The canvas owns it.
    SearchOverlayView *m_searchOverlay = nullptr;

    std::unique_ptr<HotkeyListener> m_hotkeyListener;
    std::unique_ptr<FlipEngine> m_flipEngine;
    std::unique_ptr<HttpClient> m_httpClient;
    std::unique_ptr<SyncEngine> m_syncEngine;
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<SettingsWindowController> m_settingsWindowController;

    ScheduledCall m_warmUp;
    NotificationCenter::Observation m_permissionsGrantedObservation;
    NotificationCenter::Observation m_canvasReadyObservation;
    NotificationCenter::Observation m_firstFlipObservation;
};

} // namespace tallowby
