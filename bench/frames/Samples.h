#pragma once

#include <QJsonObject>
#include <QString>

#include <vector>

namespace tallowby::bench {

/// Measured values of one kind, in milliseconds.
class Samples {
public:
    void add(double milliseconds) { m_values.push_back(milliseconds); }
    void addAll(const Samples &other);
    [[nodiscard]] std::size_t count() const { return m_values.size(); }
    /// The value below which the share `quantile` (0 … 1) of the samples lies; 0 without samples.
    [[nodiscard]] double quantile(double quantile) const;
    /// How much of the samples is above `limit`, in per cent.
    [[nodiscard]] double percentOver(double limit) const;
    /// count, median, p95, p99 and max.
    [[nodiscard]] QJsonObject summary() const;

private:
    std::vector<double> m_values;
};

} // namespace tallowby::bench
