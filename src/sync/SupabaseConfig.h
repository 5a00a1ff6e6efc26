#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <variant>

namespace tallowby {

/// Where the backend is and the public key that opens its door; both are a matter of deployment.
struct SupabaseConfig {
    /// https, or http to a loopback address; no path.
    QUrl projectURL;
    /// The key of the anonymous role: a JWT or a publishable key. Public, but never logged.
    QByteArray anonymousKey;

    /// What `TALLOWBY_SUPABASE_URL` and `TALLOWBY_SUPABASE_ANON_KEY` say in the environment, else what the build was
    /// given under the same names, else the local development stack of the Supabase CLI. A value that cannot be used
    /// ends the program with one clear line.
    [[nodiscard]] static SupabaseConfig fromEnvironment();
    /// The same for given texts; the reason when they cannot be used, without the key.
    [[nodiscard]] static std::variant<SupabaseConfig, QString> parsed(const QString &url, const QString &key);
};

} // namespace tallowby
