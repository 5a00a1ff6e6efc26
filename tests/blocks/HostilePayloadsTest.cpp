#include "blocks/BlockKinds.h"
#include "blocks/CanvasDriver.h"
#include "model/AnyCodable.h"
#include "platform/theme/Theme.h"

#include <gtest/gtest.h>

namespace tallowby {

namespace {

/// Every key that any kind reads, with `text` in the place of each text.
QByteArray payloadWith(const QByteArray &text) {
    QByteArray payload = R"({"unknown":{"kept":[1]},"title":"@","items":[{"id":"no","text":"@","isDone":false}],)"
                         R"("rows":1,"columns":1,"cells":[["@"]],"shapeType":"@","fillColor":"@","strokeColor":"@",)"
                         R"("strokes":[{"points":[{"x":0,"y":0},{"x":90,"y":60}],"color":"@","width":3}],"image":"@",)"
                         R"("iconName":"@","stickyColor":"@","codeLanguage":"@","fileName":"@"})";
    return payload.replace("@", text);
}

struct HostilePayloads : testing::Test {
    HostilePayloads() { EXPECT_FALSE(isAnythingSeen()); }

    /// Something else than the canvas and its dots, where the blocks are.
    bool isAnythingSeen() {
        canvas.settle();
        const QImage drawn = canvas.window.grabWindow();
        for (int y = 15; y < 205; ++y) {
            for (int x = 15; x < 305; ++x) {
                const QColor color = drawn.pixelColor(x, y);
                if (color != Theme::shared().canvas() && color != Theme::shared().dot()) {
                    return true;
                }
            }
        }
        return false;
    }

    void expectReadable(BlockType type, const QByteArray &payload, const QString &text) {
        SCOPED_TRACE(testing::Message() << int(type) << ' ' << payload.left(60).toStdString() << ' '
                                        << text.left(20).toStdString());
        const BlockPtr block = canvas.add(type, {-380, -280, 280, 180}, text);
        block->setContent(payload);
        canvas.settle();
        const BlockContainerView *container = canvas.containers().at(block.get());
        EXPECT_LE(container->width(), 1e5);
        EXPECT_LE(container->height(), 1e5);
        // Where no stroke was drawn there is none, and a stroke may lie anywhere.
        const bool mayShowNothing =
            type == BlockType::sketch && (payload.isEmpty() || payload == "{}" || !block->sketchStrokes().empty());
        EXPECT_TRUE(isAnythingSeen() || mayShowNothing);
        // Typing neither stops the program nor takes away what nobody knows.
        canvas.model.beginEditing(block);
        if (canvas.model.focusedBlock() == block) {
            canvas.type(QStringLiteral("x"));
        }
        canvas.model.endEditing();
        canvas.settle();
        if (payload.contains("unknown") && AnyCodable::fromJson(payload)) {
            EXPECT_TRUE(block->content().contains(R"("unknown":{"kept":[1]})"));
        }
        canvas.model.deleteBlockSilently(block);
        canvas.settle();
    }

    test::CanvasDriver canvas;
};

TEST_F(HostilePayloads, EveryKindShowsAReadableBody) {
    const QByteArray payloads[] = {
        {},
        "{}",
        "[]",
        "null",
        "\"text\"",
        R"({"items":[{"id":)",
        "\xff\xfe\x00\x01",
        // Each of the wrong type.
        R"({"unknown":{"kept":[1]},"title":5,"items":{"a":1},"rows":"x","columns":null,"cells":"abc","shapeType":7,)"
        R"("fillColor":[],"strokeColor":{},"strokeWidth":"wide","strokes":"none","image":12,"iconName":false,)"
        R"("stickyColor":3,"codeLanguage":[],"thickness":"thick","flipHorizontal":"yes","fileName":{},"duration":"1"})",
        // Half of it right.
        R"({"items":[null,{},{"text":5},{"id":"no","text":"kept","isDone":"yes"}],"cells":[null,["a",null,{"x":1}],"b"],)"
        R"("strokes":[null,{},{"points":[]},{"points":[{"x":"a"}],"color":1}]})",
        // Numbers out of all bounds.
        R"({"rows":1e308,"columns":-9000000000000000000,"strokeWidth":1e308,"thickness":1e308,"duration":-1e308,)"
        R"("strokes":[{"points":[{"x":-50,"y":0,"pressure":1e308},{"x":50,"y":40,"pressure":-5},{"x":1e300,"y":-1e300}],)"
        R"("color":"#000000","width":1e308}]})",
        R"({"strokeWidth":-1,"thickness":-1,"shapeType":"line","strokes":[{"points":[{"x":0,"y":0},{"x":9,"y":9}],)"
        R"("color":"#000000","width":-3}]})",
        payloadWith(R"(\ud800 half \udfff)"),
        payloadWith("\\u202e\\u2066 turned \\u0000\\u001b[31m"),
        payloadWith("<img src='file:///etc/passwd'><b>no markup</b>"),
    };
    const QString texts[] = {QStringLiteral("plain"), QString(QChar(0xD800)) + u" half " + QChar(0xDFFF),
                             QStringLiteral("\u202e\u2066 turned \u0001\x1b[31m <b>no markup</b>")};
    for (int kind = 0; kind < kBlockTypeCount; ++kind) {
        for (const QByteArray &payload : payloads) {
            expectReadable(static_cast<BlockType>(kind), payload, texts[0]);
        }
        for (const QString &text : texts) {
            expectReadable(static_cast<BlockType>(kind), {}, text);
        }
    }
}

TEST_F(HostilePayloads, TenMegabytesOfTextDoNotHoldUpAnyKind) {
    const QByteArray payload = payloadWith(QByteArray(1'000'000, 'x'));
    ASSERT_GT(payload.size(), 10'000'000);
    const QString text(10'000'000, u'x');
    for (int kind = 0; kind < kBlockTypeCount; ++kind) {
        expectReadable(static_cast<BlockType>(kind), payload, QStringLiteral("plain"));
        expectReadable(static_cast<BlockType>(kind), {}, text);
    }
}

} // namespace

} // namespace tallowby
