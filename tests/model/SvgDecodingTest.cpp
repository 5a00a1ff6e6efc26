#include "model/SvgDecoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QBuffer>

namespace tallowby {

namespace {

QByteArray svg(const QByteArray &inside, const QByteArray &attributes = "width='40' height='20'") {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' " + attributes + '>' +
           inside + "</svg>";
}

/// A small picture, with `hidden` behind its end.
QByteArray embedded(QSize size, const QByteArray &hidden = {}) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::green);
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return "<image width='40' height='20' xlink:href='data:image/png;base64," + file.toBase64() + hidden + "'/>";
}

} // namespace

TEST(SvgDecoding, ADrawingIsMadeAsLargeAsIsAskedFor) {
    const QByteArray square = "<linearGradient id='g'><stop stop-color='#f00'/></linearGradient>"
                              "<rect id='r' width='20' height='20' style='fill:url(#g)'/>"
                              "<use xlink:href='#r' x='20'/>";
    const DecodedPicture own = decodePicture(svg(square));
    EXPECT_EQ(own.refusal, QString());
    EXPECT_EQ(own.size, QSize(40, 20));
    EXPECT_EQ(own.image.size(), QSize(40, 20));
    const DecodedPicture large = decodePicture("<!-- drawn by hand -->\n" + svg(square), 800);
    EXPECT_EQ(large.size, QSize(40, 20));
    EXPECT_EQ(large.image.size(), QSize(800, 400));
    EXPECT_EQ(large.image.pixelColor(600, 200), QColor(Qt::red)) << "a part that is used again";
    EXPECT_EQ(decodePicture(svg({}, "viewBox='0 0 30 60'")).size, QSize(30, 60));
    EXPECT_EQ(decodePicture(svg(embedded({2, 1})), 40).image.pixelColor(20, 10), QColor(Qt::green));
    const QSize huge = decodePicture(svg({}, "width='200000' height='100000'")).image.size();
    EXPECT_EQ(huge, QSize(4096, 2048));
}

TEST(SvgDecoding, WhatReachesOutOrIsTooMuchIsRefused) {
    QByteArray tenfold = "<g id='a0'><rect width='1' height='1'/></g>";
    for (int i = 1; i < 12; ++i) {
        QByteArray uses;
        for (int use = 0; use < 10; ++use) {
            uses += "<use xlink:href='#a" + QByteArray::number(i - 1) + "'/>";
        }
        tenfold += "<g id='a" + QByteArray::number(i) + "'>" + uses + "</g>";
    }
    const char *const outside = "refers to something outside";
    const char *const tooMuch = "more parts than can be drawn";
    const struct {
        QByteArray file;
        const char *refusal;
    } cases[] = {
        {svg("<image xlink:href='/etc/hostname'/>"), outside},
        {svg("<image href='file:///etc/hostname'/>"), outside},
        {svg("<image href='http://127.0.0.1/x.png'/>"), outside},
        {svg("<image href='data:image/svg+xml;base64,PHN2Zy8+'/>"), outside},
        {svg("<rect fill='url(http://127.0.0.1/#g)'/>"), outside},
        {svg("<style>@import 'x.css';</style>"), outside},
        {svg("<rect style='fill:\\75rl(x)'/>"), outside},
        {"<?xml version='1.0'?><?xml-stylesheet href='/etc/hostname'?>" + svg({}), outside},
        {"<!DOCTYPE svg [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;'>]>" + svg("<text>&b;</text>"), "entities"},
        {svg(embedded({2, 1}, "base64," + svg("<image href='/proc/self/fd/3'/>").toBase64())), outside},
        {svg("<image href='data:image/png;base64,AAAA'/>"), "too large or broken"},
        {svg(tenfold), tooMuch},
        {svg("<g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g>"), tooMuch},
        {svg(QByteArray("<g>").repeated(100) + QByteArray("</g>").repeated(100)), tooMuch},
        {svg(QByteArray("<g/>").repeated(60'000)), tooMuch},
        {svg(QByteArray(kLargestSvgFile, ' ')), "more than 4 MiB"},
        {svg("<rect>"), "cannot be decoded"},
        {svg({}, "width='0' height='0'"), "no size"},
    };
    for (const auto &[file, refusal] : cases) {
        const DecodedPicture picture = decodePicture(file, 64);
        EXPECT_TRUE(picture.image.isNull()) << file.left(300).toStdString();
        EXPECT_THAT(picture.refusal.toStdString(), testing::HasSubstr(refusal)) << file.left(300).toStdString();
    }
}

} // namespace tallowby
