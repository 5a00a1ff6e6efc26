#pragma once

namespace tallowby::test {

/// Makes elements known by the names "loosemicrophone" and "loosecamera": a tone and a test card that end in an error
/// after a second or so, as devices do that are unplugged.
void registerLooseDevices();

} // namespace tallowby::test
