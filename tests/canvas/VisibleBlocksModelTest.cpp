#include "canvas/model/VisibleBlocksModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QStringList>

#include <map>

namespace tallowby {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Writes down each row change as a view receives it.
class RowLog {
public:
    explicit RowLog(VisibleBlocksModel &model) {
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &m_receiver,
                         [this](const QModelIndex &, int first, int last) { note("insert", first, last); });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &m_receiver,
                         [this](const QModelIndex &, int first, int last) { note("remove", first, last); });
        QObject::connect(
            &model, &QAbstractItemModel::rowsMoved, &m_receiver,
            [this](const QModelIndex &, int from, int, const QModelIndex &, int to) { note("move", from, to); });
        QObject::connect(&model, &QAbstractItemModel::modelReset, &m_receiver, [this] { note("reset", 0, 0); });
    }
    std::vector<std::string> take() { return std::exchange(m_changes, {}); }

private:
    void note(const std::string &change, int first, int last) {
        m_changes.push_back(change + " " + std::to_string(first) + ".." + std::to_string(last));
    }

    QObject m_receiver;
    std::vector<std::string> m_changes;
};

struct VisibleRows : testing::Test {
    /// Blocks by letter, each made once.
    std::vector<BlockPtr> blocks(const std::string &letters) {
        std::vector<BlockPtr> result;
        for (const char letter : letters) {
            BlockPtr &block = known[letter];
            if (!block) {
                block = Block::text({}, {}, QString(QLatin1Char(letter)));
            }
            result.push_back(block);
        }
        return result;
    }
    std::string rows() {
        std::string letters;
        for (const BlockPtr &block : model.blocks()) {
            letters += block->rawTextOrEmpty().toStdString();
        }
        return letters;
    }

    std::map<char, BlockPtr> known;
    VisibleBlocksModel model;
    RowLog log{model};
};

TEST_F(VisibleRows, AssigningTouchesOnlyTheRowsThatDiffer) {
    struct Case {
        std::string from;
        std::string to;
        std::vector<std::string> changes;
    };
    for (const Case &assigned : std::initializer_list<Case>{
             {"", "abc", {"insert 0..2"}},
             {"abc", "abc", {}},
             {"abcdef", "cd", {"remove 4..5", "remove 0..1"}},
             {"bc", "abcde", {"insert 0..0", "insert 3..4"}},
             {"abc", "cde", {"remove 0..1", "insert 1..2"}},
             {"abc", "xby", {"remove 2..2", "remove 0..0", "insert 0..0", "insert 2..2"}},
             {"abcd", "abdc", {"move 3..2"}},
             {"abc", "", {"remove 0..2"}},
         }) {
        model.assign({});
        model.assign(blocks(assigned.from));
        log.take();
        model.assign(blocks(assigned.to));
        EXPECT_EQ(log.take(), assigned.changes) << assigned.from << " to " << assigned.to;
        EXPECT_EQ(rows(), assigned.to);
    }
}

TEST_F(VisibleRows, SingleChangesAreOneRowEach) {
    model.assign(blocks("abc"));
    log.take();
    model.append(blocks("d").front());
    model.moveToEnd(*blocks("b").front());
    model.moveToEnd(*blocks("b").front());
    model.removeAll({blocks("a").front().get()});
    model.removeAll({blocks("a").front().get()});
    EXPECT_THAT(log.take(), ElementsAre("insert 3..3", "move 1..4", "remove 0..0"));
    EXPECT_EQ(rows(), "cdb");
    EXPECT_EQ(model.data(model.index(0), VisibleBlocksModel::BlockRole).value<Block *>(), blocks("c").front().get());
    EXPECT_FALSE(model.data(model.index(9), VisibleBlocksModel::BlockRole).isValid());
}

} // namespace

} // namespace tallowby
