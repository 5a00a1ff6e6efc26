#pragma once

namespace tallowby {

/// Makes the QML modules of every folder known. Called once, before the first engine loads anything.
void registerQmlTypes();

} // namespace tallowby
