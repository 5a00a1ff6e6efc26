#include "platform/theme/SymbolTable.h"

#include <QFile>
#include <QHash>

namespace tallowby {

namespace {

const QString kDefaultPicture = QStringLiteral("question-square");
const QString kOwnControls = QStringLiteral("Interface");

struct SymbolTable {
    QHash<QString, QString> pictures;
    std::vector<SymbolCategory> categories;
};

SymbolTable readTable() {
    QFile file(QStringLiteral(":/symbols/symbols.txt"));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("The table of symbols is not in the program");
    }
    SymbolTable table;
    bool isOwn = true;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.isEmpty() || line.startsWith(u'#')) {
            continue;
        }
        if (line.startsWith(u'[')) {
            const QString name = line.sliced(1).chopped(1);
            isOwn = name == kOwnControls;
            if (!isOwn) {
                table.categories.push_back({name, {}});
            }
            continue;
        }
        const QString name = line.section(u' ', 0, 0);
        table.pictures.insert(name, line.section(u' ', 1, 1));
        if (!isOwn) {
            const QString words = QString(name).replace(u'.', u' ') + u' ' + line.section(u' ', 2);
            table.categories.back().symbols.push_back({name, words.trimmed()});
        }
    }
    return table;
}

const SymbolTable &table() {
    static const SymbolTable kTable = readTable();
    return kTable;
}

} // namespace

const std::vector<SymbolCategory> &symbolCategories() {
    return table().categories;
}

bool isSymbol(const QString &name) {
    return table().pictures.contains(name);
}

QString symbolFile(const QString &name) {
    return QStringLiteral(":/symbols/") + table().pictures.value(name, kDefaultPicture) + QStringLiteral(".svg");
}

} // namespace tallowby
