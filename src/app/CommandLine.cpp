#include "app/CommandLine.h"

#include <algorithm>
#include <array>

namespace tallowby {

namespace {

struct Option {
    QLatin1StringView name;
    LaunchAction action;
    /// Empty for what only the tests and packagers call.
    QLatin1StringView help;
};

constexpr auto kOptions = std::to_array<Option>({
    {QLatin1StringView("--toggle"), LaunchAction::toggle, QLatin1StringView("turn the screen over, or back")},
    {QLatin1StringView("--settings"), LaunchAction::settings, QLatin1StringView("open the settings")},
    {QLatin1StringView("--quit"), LaunchAction::quit, QLatin1StringView("end the running program")},
    {QLatin1StringView("--version"), LaunchAction::version, QLatin1StringView("print the version")},
    {QLatin1StringView("--help"), LaunchAction::help, QLatin1StringView("print this text")},
    {QLatin1StringView("--self-test"), LaunchAction::selfTest, QLatin1StringView()},
});

constexpr int kOptionColumn = 14;

} // namespace

std::optional<LaunchAction> parseCommandLine(const QStringList &arguments) {
    if (arguments.isEmpty()) {
        return LaunchAction::run;
    }
    if (arguments.size() > 1) {
        return std::nullopt;
    }
    const auto *option = std::ranges::find(kOptions, arguments.first(), &Option::name);
    return option == kOptions.end() ? std::nullopt : std::optional(option->action);
}

QString helpText() {
    QString text = kUsageLine + u"\n\nWithout an option the program starts and waits in the background.\n\n";
    for (const Option &option : kOptions) {
        if (!option.help.isEmpty()) {
            text += u"  " + QString(option.name).leftJustified(kOptionColumn) + option.help + u'\n';
        }
    }
    return text;
}

} // namespace tallowby
