#include "platform/NotificationCenter.h"

#include <gtest/gtest.h>

#include <optional>

namespace tallowby {

namespace {

class NotificationCenterTest : public testing::Test {
protected:
    [[nodiscard]] NotificationCenter::Handler note(const QString &text) {
        return [this, text](const Notification &) { heard << text; };
    }

    NotificationCenter center;
    QStringList heard;
};

TEST_F(NotificationCenterTest, DeliversByNameInOrderOfRegistrationBeforePostReturns) {
    QVariantMap info;
    const auto first = center.observe(u"opened"_qs, note(u"first"_qs));
    const auto second = center.observe(u"opened"_qs, [&](const Notification &notification) {
        heard << notification.name;
        info = notification.userInfo;
    });
    const auto other = center.observe(u"closed"_qs, note(u"other"_qs));
    center.post(u"opened"_qs, {{u"x"_qs, 1.5}});
    EXPECT_EQ(heard, (QStringList{u"first"_qs, u"opened"_qs}));
    EXPECT_EQ(info, (QVariantMap{{u"x"_qs, 1.5}}));
    center.post(u"Opened"_qs);
    EXPECT_EQ(heard.size(), 2);
}

TEST_F(NotificationCenterTest, ObserversMayComeAndGoDuringADelivery) {
    NotificationCenter::Observation self;
    NotificationCenter::Observation later;
    NotificationCenter::Observation late;
    self = center.observe(u"opened"_qs, [&](const Notification &) {
        heard << u"once"_qs;
        self.stop();
        later.stop();
        late = center.observe(u"opened"_qs, note(u"late"_qs));
    });
    later = center.observe(u"opened"_qs, note(u"removed"_qs));
    center.post(u"opened"_qs);
    EXPECT_EQ(heard, QStringList{u"once"_qs});
    center.post(u"opened"_qs);
    EXPECT_EQ(heard, (QStringList{u"once"_qs, u"late"_qs}));
}

TEST_F(NotificationCenterTest, DeliveriesMayNest) {
    const auto outer = center.observe(u"opened"_qs, [&](const Notification &) {
        heard << u"outer"_qs;
        if (heard.size() == 1) {
            center.post(u"opened"_qs);
        }
    });
    const auto inner = center.observe(u"opened"_qs, note(u"inner"_qs));
    center.post(u"opened"_qs);
    EXPECT_EQ(heard, (QStringList{u"outer"_qs, u"outer"_qs, u"inner"_qs, u"inner"_qs}));
}

TEST(NotificationCenter, ObservationsMayOutliveTheirCentre) {
    auto center = std::make_optional<NotificationCenter>();
    auto observation = center->observe(QStringLiteral("opened"), [](const Notification &) {});
    center.reset();
    EXPECT_TRUE(observation.isActive());
    observation.stop();
    EXPECT_FALSE(observation.isActive());
}

} // namespace

} // namespace tallowby
