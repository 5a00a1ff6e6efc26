#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace tallowby {

/// What one start of the program may ask of the one that runs already.
enum class InstanceCommand {
    activate, ///< a plain second start
    toggle,
    settings,
    quit,
};

/// Makes the program the only one of its user's session and carries commands from later starts to it. Main thread only.
class InstanceBus {
public:
    enum class Claim {
        first,      ///< this process is the one that runs now
        handedOver, ///< another runs and has been given the command; a busy one obeys when it gets to it
        unavailable ///< there is no session bus; this process runs without being found by others
    };

    virtual ~InstanceBus() = default;

    /// Becomes the running program, or hands `command` to it. With `handler`, later starts' commands come in there.
    [[nodiscard]] virtual Claim claim(InstanceCommand command, std::function<void(InstanceCommand)> handler) = 0;
    /// Hands `command` to the running program, without becoming it. False when none runs.
    [[nodiscard]] virtual bool send(InstanceCommand command) = 0;
};

[[nodiscard]] std::unique_ptr<InstanceBus> makeInstanceBus();

/// Calls `handler` on the main thread's event loop at SIGTERM, SIGINT and SIGHUP, which then no longer end the process
/// at once. Called once, after the application object exists.
void onTerminationSignal(std::function<void()> handler);

} // namespace tallowby
