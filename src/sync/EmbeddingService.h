#pragma once

#include <QStringView>

#include <vector>

namespace tallowby {

/// Turns a text into the vector by which texts of like meaning are found. This release has no model: every text gets
/// zeros, which match nothing.
class EmbeddingService {
public:
    static constexpr std::size_t kDimensions = 768;

    virtual ~EmbeddingService() = default;

    [[nodiscard]] virtual std::vector<float> embedding(QStringView text) const;
};

} // namespace tallowby
