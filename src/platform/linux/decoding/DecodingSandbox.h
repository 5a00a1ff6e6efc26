#pragma once

#include <QStringList>

namespace tallowby {

/// Gives up for good what decoding a picture does not need: other programs, the network, writing anything, opening any
/// file outside `readableFolders`, more memory than a picture may take. Nothing of it can be had back by this process.
/// False where the system has no filter for system calls; all other limits hold then, too.
bool enterDecodingSandbox(const QStringList &readableFolders);

/// Allows this process that much more time on the processor, and ends it afterwards.
void allowProcessorTime(int seconds);

} // namespace tallowby
