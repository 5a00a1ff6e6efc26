#pragma once

namespace tallowby::test {

/// Makes elements known by the names "loosemicrophone" and "loosecamera": a tone and a test card that end in an error
/// after a second or so, as devices do that are unplugged. "endingmicrophone" just ends then.
void registerLooseDevices();

/// As long as it lives, films are encoded for a second or so, and then there is an error.
class DyingEncoder {
public:
    DyingEncoder();
    ~DyingEncoder();
    DyingEncoder(const DyingEncoder &) = delete;
    DyingEncoder &operator=(const DyingEncoder &) = delete;
};

} // namespace tallowby::test
