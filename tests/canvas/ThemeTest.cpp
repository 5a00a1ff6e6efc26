#include "platform/theme/Theme.h"
#include "platform/theme/SymbolTable.h"
#include "platform/theme/ThemeImageProvider.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPalette>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// WCAG 2: relative luminance and contrast ratio.
double luminance(const QColor &color) {
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

void useDesktopPalette(const QColor &window, const QColor &text) {
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    QGuiApplication::setPalette(palette);
    QCoreApplication::processEvents();
}

TEST(Theme, FollowsTheDesktopAndStaysReadable) {
    Theme &theme = Theme::shared();
    for (const bool isDark : {true, false}) {
        useDesktopPalette(isDark ? Qt::black : Qt::white, isDark ? Qt::white : Qt::black);
        ASSERT_EQ(theme.isDark(), isDark);
        for (const QColor &ground : {theme.canvas(), theme.surface(), theme.surfaceRaised()}) {
            EXPECT_GE(contrast(theme.ink(), ground), 4.5) << isDark;
            EXPECT_GE(contrast(theme.inkSoft(), ground), 4.5) << isDark;
            EXPECT_GE(contrast(theme.accent(), ground), 3.0) << isDark;
        }
        EXPECT_EQ(theme.textColor(QStringLiteral("#000000")), theme.ink());
        EXPECT_EQ(theme.textColor(QStringLiteral("#FFFFFF")), theme.ink());
        EXPECT_EQ(theme.textColor(QStringLiteral("#2F6BEB")), QColor(0x2F6BEB));
        EXPECT_EQ(theme.textColor(QStringLiteral("red")), theme.ink()) << "no colour of the format";
        EXPECT_EQ(theme.textColor(QStringLiteral("#12")), theme.ink());
    }
}

TEST(Theme, TheEnvironmentOverridesTheDesktop) {
    qputenv("TALLOWBY_THEME", "dark");
    useDesktopPalette(Qt::white, Qt::darkBlue);
    EXPECT_TRUE(Theme::shared().isDark());
    qunsetenv("TALLOWBY_THEME");
    useDesktopPalette(Qt::white, Qt::black);
    EXPECT_FALSE(Theme::shared().isDark());
}

TEST(ThemeImages, TintSymbolsAndShowADefaultForUnknownOnes) {
    ThemeImageProvider provider;
    QSize size;
    for (const QString &name : {QStringLiteral("plus"), QStringLiteral("no.such.symbol")}) {
        ASSERT_TRUE(QFile::exists(symbolFile(name))) << qPrintable(name);
        const QImage image =
            provider.requestImage(QStringLiteral("symbol/") + name + QStringLiteral("/ff0000"), &size, {32, 32});
        ASSERT_EQ(size, QSize(32, 32));
        int painted = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                painted += pixel.alpha() > 0 ? 1 : 0;
                EXPECT_TRUE(pixel.alpha() == 0 || (pixel.green() == 0 && pixel.blue() == 0));
            }
        }
        EXPECT_GT(painted, 20) << qPrintable(name);
    }
    EXPECT_LE(provider.requestImage(QStringLiteral("symbol/plus/fff"), &size, {100'000, 100'000}).width(), 1024);
    const QImage shadow = provider.requestImage(QStringLiteral("shadow/12/10/1"), &size, {});
    EXPECT_EQ(size, QSize(45, 45));
    EXPECT_GT(shadow.pixelColor(22, 22).alpha(), 200);
    EXPECT_LT(shadow.pixelColor(0, 0).alpha(), 10);
}

TEST(Symbols, AreManyAndEachHasAPicture) {
    QSet<QString> names;
    for (const SymbolCategory &category : symbolCategories()) {
        EXPECT_FALSE(category.symbols.empty());
        for (const SymbolEntry &symbol : category.symbols) {
            EXPECT_TRUE(QFile::exists(symbolFile(symbol.name))) << qPrintable(symbol.name);
            EXPECT_FALSE(names.contains(symbol.name)) << qPrintable(symbol.name);
            names << symbol.name;
        }
    }
    EXPECT_GE(names.size(), 150);
    EXPECT_FALSE(isSymbol(QStringLiteral("../etc/passwd")));
}

} // namespace

} // namespace tallowby
