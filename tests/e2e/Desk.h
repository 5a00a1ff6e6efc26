#pragma once

#include "e2e/OtherApplication.h"
#include "e2e/Program.h"
#include "e2e/XPointer.h"
#include "support/XKeyboard.h"
#include "support/XSession.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QJsonArray>

#include <memory>

namespace tallowby::test {

/// A person's desk: an X session in which another application has the keyboard, and the built program, if it is
/// started.
class Desk : public testing::Test {
protected:
    static constexpr QSize kScreenSize{1280, 800};
    static constexpr QPoint kScreenCentre{640, 400};

    Desk();
    ~Desk() override;

    void SetUp() override;

    /// The person has seen the cards that show a newcomer around, or not. The survey has been seen in any case.
    void setKnowsCanvas(bool knows);
    /// What the program finds of earlier starts and choices, in place of all that it knew: lines of its settings.
    void setKept(const QByteArray &lines);
    /// Starts the program and waits until it is ready.
    void startProgram();
    /// Another start of the program with one command; returns its exit code.
    [[nodiscard]] int command(const QString &option);
    /// Ends the program as the desktop's session would; expects a clean end.
    void endProgram();
    [[nodiscard]] Program &program() { return *m_program; }

    void pressHotKey();
    void openCanvas();
    void closeCanvas();

    /// The records of the file, deleted ones left out; empty while there is no whole file.
    [[nodiscard]] QJsonArray notes() const;
    /// Waits until the texts of the notes on disk are these, in any order.
    [[nodiscard]] testing::AssertionResult notesBecome(QStringList texts) const;
    /// Where the note with that text has its top left corner on the canvas, as the file has it.
    [[nodiscard]] QPointF noteAt(const QString &text) const;
    /// The share of pixels of `area` that are darker than any paper: text.
    [[nodiscard]] double inkIn(QRect area) const;
    /// Whether anything in `area` has the colour of what is selected or edited.
    [[nodiscard]] bool isAccentIn(QRect area) const;
    [[nodiscard]] QImage picture(QRect area) const;

    QProcessEnvironment &environment() { return m_environment; }
    [[nodiscard]] QString dataFolder() const;

    XSession session;
    XKeyboard keyboard;
    XPointer pointer;
    OtherApplication other;

private:
    QProcessEnvironment m_environment;
    std::unique_ptr<Program> m_program;
};

} // namespace tallowby::test
