#pragma once

#include "Tscripting.h"
#include "foundation/TerrorHandler.h"

#include <QTimer>
#include <QWidget>

#include <deque>
#include <vector>

class QComboBox;
class QKeyEvent;
class QPlainTextEdit;

/**
 * Runs what the user types, and shows it with what it answers and writes; warnings and errors of the whole program
 * come here as well, in colours of their own. The newest kMostLines lines stay, and what is written faster than it can
 * be shown is cut down to its end.
 *
 * Return runs the input, unless Python needs more of it: a block ends with an empty line. With shift it always makes a
 * new line, with control it always runs. Up and down, in the first and last line, bring back what was run before.
 */
class TscriptConsole : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kMostLines = 2000;

    explicit TscriptConsole(QWidget* parent = nullptr);
    ~TscriptConsole() override;

    bool run(TscriptLanguage language, const QString& text);
    bool runFile(const QString& path);
    /** Lets the user type. */
    void takeFocus();

    TscriptLanguage language() const;
    void setLanguage(TscriptLanguage language);

Q_SIGNALS:
    /** The user has pressed Esc. */
    void left();
    /** An error or a warning; its last line. */
    void reported(const QString& message);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum Tkind { kEcho, kOutput, kNote, kWarning, kError, kKinds };
    struct Tpiece
    {
        Tkind kind;
        QString text;
    };
    struct Tentry
    {
        TscriptLanguage language;
        QString text;
    };

    void put(Tkind kind, const QString& text);
    void putLine(Tkind kind, const QString& text);
    void report(TerrorHandler::Tseverity severity, const QString& message);
    bool conclude(const TscriptOutcome& outcome);
    void flush();
    void takeOutput();
    void runInput();
    bool needsMore() const;
    void newLine();
    void recall(int step);
    bool inputKey(QKeyEvent& event);
    void fitInput();
    QString folded(const QString& text);

    QPlainTextEdit* fOutput;
    QPlainTextEdit* fInput;
    QComboBox* fLanguage;
    std::deque<Tpiece> fPending;
    int fPendingLength = 0;
    bool fLeftOut = false;
    bool fAtLineStart = true;
    int fColumn = 0;
    QTimer fFlushTimer;
    std::vector<Tentry> fHistory;
    std::size_t fRecalled = 0; ///< as many as there are: nothing is
    QString fDraft;            ///< what was typed before something was recalled
    bool fTakesOutput = false;
    TerrorHandler::Tsubscription fReports;
};
