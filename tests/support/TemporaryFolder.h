#pragma once

#include <QTemporaryDir>

namespace tallowby::test {

/// A folder of its own that goes with the test.
class TemporaryFolder {
public:
    [[nodiscard]] QString path() const { return m_folder.path(); }
    [[nodiscard]] QString file(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};

} // namespace tallowby::test
