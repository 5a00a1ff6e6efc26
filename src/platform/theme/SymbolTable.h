#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace tallowby {

/// A symbol that can be chosen for an icon.
struct SymbolEntry {
    QString name;
    /// In lower case: the name's own words and others that mean it.
    QString words;
};

struct SymbolCategory {
    /// As it stands in the table, in English.
    QString name;
    std::vector<SymbolEntry> symbols;
};

/// Those of src/platform/theme/symbols.txt, in its order, without those of the program's own controls.
[[nodiscard]] const std::vector<SymbolCategory> &symbolCategories();
[[nodiscard]] bool isSymbol(const QString &name);
/// The picture's file for a symbol name; the default picture's for a name that has none.
[[nodiscard]] QString symbolFile(const QString &name);

} // namespace tallowby
