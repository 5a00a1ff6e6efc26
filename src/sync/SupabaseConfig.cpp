#include "sync/SupabaseConfig.h"

#include <QHostAddress>

#include <algorithm>

namespace tallowby {

namespace {

constexpr const char *kUrlVariable = "TALLOWBY_SUPABASE_URL";
constexpr const char *kKeyVariable = "TALLOWBY_SUPABASE_ANON_KEY";
/// What `supabase start` serves on every developer's machine. The key is the same everywhere and opens nothing else.
constexpr const char *kLocalUrl = "http://127.0.0.1:54321";
constexpr const char *kLocalKey = "eyJhbGciOiJIUzI1NiIsInR5cCI6IkpXVCJ9."
                                  "eyJpc3MiOiJzdXBhYmFzZS1kZW1vIiwicm9sZSI6ImFub24iLCJleHAiOjE5ODM4MTI5OTZ9."
                                  "CRXP1A7WOeoJeXxjNni43kdQwgnWNReilDMblYTn_I0";
/// Keys that open everything begin like this. They belong on a server.
constexpr QLatin1StringView kSecretKeyStart{"sb_secret_"};

QString setting(const char *variable, const char *built, const char *local) {
    const QString given = qEnvironmentVariable(variable);
    if (!given.isEmpty()) {
        return given;
    }
    return QString::fromUtf8(*built ? built : local);
}

bool isLoopback(const QString &host) {
    return host == u"localhost" || QHostAddress(host).isLoopback();
}

/// What may stand in a header as it is.
bool isKey(const QString &text) {
    const auto isTokenCharacter = [](QChar character) { return character > u' ' && character < u'\x7f'; };
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), isTokenCharacter);
}

} // namespace

std::variant<SupabaseConfig, QString> SupabaseConfig::parsed(const QString &url, const QString &key) {
    QUrl project(url, QUrl::StrictMode);
    if (!project.isValid() || project.host().isEmpty()) {
        return QStringLiteral("%1 is no address: %2").arg(QLatin1StringView(kUrlVariable), url);
    }
    if (!project.userInfo().isEmpty()) {
        return QStringLiteral("%1 must not carry a name or a password").arg(QLatin1StringView(kUrlVariable));
    }
    if (project.hasQuery() || project.hasFragment() || (!project.path().isEmpty() && project.path() != u"/")) {
        return QStringLiteral("%1 must end after the host and the port: %2").arg(QLatin1StringView(kUrlVariable), url);
    }
    const bool isSecure = project.scheme() == u"https";
    if (!isSecure && !(project.scheme() == u"http" && isLoopback(project.host()))) {
        return QStringLiteral("%1 must begin with https; only a loopback address may be reached by http: %2")
            .arg(QLatin1StringView(kUrlVariable), url);
    }
    if (!isKey(key)) {
        return QStringLiteral("%1 is no key: it is empty or has blanks or other characters that no key has")
            .arg(QLatin1StringView(kKeyVariable));
    }
    if (key.startsWith(kSecretKeyStart)) {
        return QStringLiteral("%1 is a secret key; the program needs the public one")
            .arg(QLatin1StringView(kKeyVariable));
    }
    project.setPath({});
    return SupabaseConfig{project, key.toLatin1()};
}

SupabaseConfig SupabaseConfig::fromEnvironment() {
    auto config = parsed(setting(kUrlVariable, TALLOWBY_SUPABASE_URL, kLocalUrl),
                         setting(kKeyVariable, TALLOWBY_SUPABASE_ANON_KEY, kLocalKey));
    if (const auto *reason = std::get_if<QString>(&config)) {
        qFatal("Tallowby cannot start: %s", qUtf8Printable(*reason));
    }
    return std::get<SupabaseConfig>(std::move(config));
}

} // namespace tallowby
