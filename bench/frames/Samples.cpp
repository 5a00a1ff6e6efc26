#include "frames/Samples.h"

#include <algorithm>
#include <cmath>

namespace tallowby::bench {

namespace {

constexpr double kFrameLimit = 20.0;

double rounded(double value) {
    return std::round(value * 100.0) / 100.0;
}

} // namespace

void Samples::addAll(const Samples &other) {
    m_values.insert(m_values.end(), other.m_values.begin(), other.m_values.end());
}

double Samples::quantile(double quantile) const {
    if (m_values.empty()) {
        return 0.0;
    }
    std::vector<double> sorted = m_values;
    std::ranges::sort(sorted);
    const double place = quantile * double(sorted.size() - 1);
    return sorted[std::size_t(std::lround(place))];
}

double Samples::percentOver(double limit) const {
    if (m_values.empty()) {
        return 0.0;
    }
    const auto over = std::ranges::count_if(m_values, [limit](double value) { return value > limit; });
    return 100.0 * double(over) / double(m_values.size());
}

QJsonObject Samples::summary() const {
    return {
        {QStringLiteral("count"), int(m_values.size())},
        {QStringLiteral("median"), rounded(quantile(0.5))},
        {QStringLiteral("p95"), rounded(quantile(0.95))},
        {QStringLiteral("p99"), rounded(quantile(0.99))},
        {QStringLiteral("max"), rounded(quantile(1.0))},
        {QStringLiteral("percent_over_20ms"), rounded(percentOver(kFrameLimit))},
    };
}

} // namespace tallowby::bench
