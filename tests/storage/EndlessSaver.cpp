// Saves the same blocks to the file named on the command line until it is killed. Each save is a generation of its own:
// every block has the number of the save as its place in the stack. Says "." after each
// save, for as long as somebody listens.

#include "storage/file/BlockFile.h"

#include <QFile>

#include <csignal>
#include <cstdio>
#include <tuple>

#include <unistd.h>

using namespace tallowby;

int main(int argc, char **argv) {
    constexpr std::size_t kBlockCount = 300;
    if (argc != 2) {
        return 2;
    }
    // Nobody listens any more after the saves that were waited for.
    std::signal(SIGPIPE, SIG_IGN);
    BlockFile file(QFile::decodeName(argv[1]));
    std::ignore = file.load(DeletedRecords::leaveOut);
    std::vector<SharedBlockFields> blocks;
    for (std::size_t place = 0; place < kBlockCount; ++place) {
        blocks.emplace_back(new BlockFields)->rawText = QStringLiteral("block %1").arg(place);
    }
    for (std::int64_t generation = 1;; ++generation) {
        for (auto &fields : blocks) {
            fields->zIndex = generation;
        }
        const auto outcome = file.write(RecordPages(blocks).snapshot({}), {});
        if (const auto *problem = std::get_if<FileProblem>(&outcome)) {
            std::fprintf(stderr, "%s\n", qUtf8Printable(problem->description));
            return 1;
        }
        [[maybe_unused]] const auto heard = ::write(STDOUT_FILENO, ".", 1);
    }
}
