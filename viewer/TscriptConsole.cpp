#include "TscriptConsole.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTextBlock>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kMostColumns = 500;        // longer lines are folded: the widget lays out a line as a whole
constexpr int kMostPending = 200 * 1000; // characters
constexpr int kPieceLength = kMostPending / 10;
constexpr std::size_t kMostPieces = 4000;    // of pending text
constexpr std::size_t kMostRemembered = 200; // of the history
constexpr int kFlushInterval = 30;           // milliseconds
constexpr int kInputLines = 8;

const QColor kColours[] = {QColor(125, 170, 220), QColor(214, 218, 222), QColor(140, 145, 150), QColor(235, 180, 80),
                           QColor(255, 105, 97)};

void makeDark(QPlainTextEdit& edit)
{
    QPalette palette = edit.palette();
    palette.setColor(QPalette::Base, QColor(30, 32, 36));
    palette.setColor(QPalette::Text, kColours[1]);
    palette.setColor(QPalette::PlaceholderText, kColours[2]);
    edit.setPalette(palette);
    edit.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    edit.setFrameShape(QFrame::NoFrame);
}

} // namespace

TscriptConsole::TscriptConsole(QWidget* parent)
    : QWidget(parent), fOutput(new QPlainTextEdit), fInput(new QPlainTextEdit), fLanguage(new QComboBox)
{
    fOutput->setReadOnly(true);
    fOutput->setUndoRedoEnabled(false);
    fOutput->setMaximumBlockCount(kMostLines);
    fOutput->setWordWrapMode(QTextOption::WrapAnywhere);
    fOutput->setMinimumHeight(60);
    fInput->setLineWrapMode(QPlainTextEdit::NoWrap);
    fInput->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (QPlainTextEdit* edit : {fOutput, fInput}) {
        makeDark(*edit);
        edit->installEventFilter(this);
    }
    connect(fInput, &QPlainTextEdit::blockCountChanged, this, &TscriptConsole::fitInput);

    if (hasPython())
        fLanguage->addItem(tr("Python"), QVariant::fromValue(static_cast<int>(TscriptLanguage::kPython)));
    fLanguage->addItem(tr("Commands"), QVariant::fromValue(static_cast<int>(TscriptLanguage::kCommands)));
    fLanguage->setFocusPolicy(Qt::NoFocus);
    const auto showExample = [this] {
        fInput->setPlaceholderText(language() == TscriptLanguage::kPython
                                       ? tr("lirn.viewport(shading=\"wire\", wireIndex=3)")
                                       : tr("viewport -shading wire -wireIndex 3"));
    };
    connect(fLanguage, qOverload<int>(&QComboBox::currentIndexChanged), this, showExample);
    showExample();
    auto* button = new QPushButton(tr("Run"));
    button->setFocusPolicy(Qt::NoFocus);
    connect(button, &QPushButton::clicked, this, &TscriptConsole::runInput);

    auto* row = new QHBoxLayout;
    row->setSpacing(4);
    row->addWidget(fLanguage, 0, Qt::AlignTop);
    row->addWidget(fInput);
    row->addWidget(button, 0, Qt::AlignTop);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 0, 4, 4);
    column->setSpacing(4);
    column->addWidget(fOutput, 1);
    column->addLayout(row);
    fitInput();

    fFlushTimer.setSingleShot(true);
    fFlushTimer.setInterval(kFlushInterval);
    connect(&fFlushTimer, &QTimer::timeout, this, &TscriptConsole::flush);
    // Reports can come from any thread.
    fReports = TerrorHandler::subscribe([self = QPointer<TscriptConsole>(this)](auto severity, const Tstring& message) {
        const QString text = QString::fromUtf8(message.asChar());
        QMetaObject::invokeMethod(QCoreApplication::instance(), [self, severity, text] {
            if (self)
                self->report(severity, text);
        });
    });
}

TscriptConsole::~TscriptConsole()
{
    fReports.end();
    if (fTakesOutput)
        setScriptOutput({});
}

TscriptLanguage TscriptConsole::language() const
{
    return static_cast<TscriptLanguage>(fLanguage->currentData().toInt());
}

void TscriptConsole::setLanguage(TscriptLanguage language)
{
    fLanguage->setCurrentIndex(fLanguage->findData(static_cast<int>(language)));
}

void TscriptConsole::takeFocus()
{
    fInput->setFocus();
}

bool TscriptConsole::run(TscriptLanguage language, const QString& text)
{
    const bool isPython = language == TscriptLanguage::kPython;
    QString echo = text;
    echo.replace(QLatin1Char('\n'), isPython ? QLatin1String("\n... ") : QLatin1String("\n  "));
    putLine(kEcho, (isPython ? QStringLiteral(">>> ") : QStringLiteral("> ")) + echo);
    if (isPython)
        takeOutput();
    return conclude(runScript(language, text));
}

void TscriptConsole::takeOutput()
{
    if (fTakesOutput)
        return;
    fTakesOutput = true;
    setScriptOutput([this](const QString& text, bool isError) { put(isError ? kError : kOutput, text); });
}

bool TscriptConsole::runFile(const QString& path)
{
    putLine(kEcho, tr("Running %1").arg(path));
    takeOutput();
    return conclude(runScriptFile(path));
}

bool TscriptConsole::conclude(const TscriptOutcome& outcome)
{
    if (!outcome.value.isEmpty())
        putLine(kOutput, outcome.value);
    if (!outcome.ok)
        report(TerrorHandler::kError, outcome.error);
    return outcome.ok;
}

void TscriptConsole::report(TerrorHandler::Tseverity severity, const QString& message)
{
    const bool isError = severity == TerrorHandler::kError;
    const QString text = message.trimmed();
    putLine(isError ? kError : severity == TerrorHandler::kWarning ? kWarning : kNote, text);
    if (severity != TerrorHandler::kInformation)
        Q_EMIT reported(text.section(QLatin1Char('\n'), -1));
}

void TscriptConsole::putLine(Tkind kind, const QString& text)
{
    put(kind, (fAtLineStart ? QString() : QStringLiteral("\n")) + text + QLatin1Char('\n'));
}

void TscriptConsole::put(Tkind kind, const QString& text)
{
    if (text.isEmpty())
        return;
    fAtLineStart = text.endsWith(QLatin1Char('\n'));
    // What can't stay is not kept waiting either. In pieces, so that a long text gives way by and by.
    fLeftOut |= text.size() > kMostPending;
    for (int at = std::max(0, text.size() - kMostPending); at < text.size(); at += kPieceLength) {
        const QString piece = text.mid(at, kPieceLength);
        if (!fPending.empty() && fPending.back().kind == kind && fPending.back().text.size() < kPieceLength)
            fPending.back().text += piece;
        else
            fPending.push_back({kind, piece});
        fPendingLength += piece.size();
    }
    while (fPending.size() > 1 && (fPendingLength > kMostPending || fPending.size() > kMostPieces)) {
        fPendingLength -= fPending.front().text.size();
        fPending.pop_front();
        fLeftOut = true;
    }
    if (!fFlushTimer.isActive())
        fFlushTimer.start();
}

/** The newest lines of the text, those that are too long in several. */
QString TscriptConsole::folded(const QString& text)
{
    QString result;
    result.reserve(text.size() + text.size() / kMostColumns + 1);
    for (const QChar c : text) {
        if (c != QLatin1Char('\n') && fColumn >= kMostColumns && !c.isLowSurrogate()) {
            result += QLatin1Char('\n');
            fColumn = 0;
        }
        result += c;
        fColumn = c == QLatin1Char('\n') ? 0 : fColumn + 1;
    }
    int at = result.size();
    for (int lines = 0; lines <= kMostLines && at > 0; ++lines)
        at = result.lastIndexOf(QLatin1Char('\n'), at - 1);
    return at > 0 ? result.mid(at + 1) : result;
}

void TscriptConsole::flush()
{
    const QTextCharFormat plain = fOutput->currentCharFormat();
    QTextCursor cursor(fOutput->document());
    cursor.beginEditBlock();
    const auto insert = [&](Tkind kind, const QString& text) {
        cursor.movePosition(QTextCursor::End);
        QTextCharFormat format = plain;
        format.setForeground(kColours[kind]);
        cursor.insertText(folded(text), format);
    };
    if (fLeftOut)
        insert(kNote, (fColumn ? QStringLiteral("\n") : QString()) + tr("[what came here is left out]\n"));
    for (const Tpiece& piece : fPending)
        insert(piece.kind, piece.text);
    cursor.endEditBlock();
    fPending.clear();
    fPendingLength = 0;
    fLeftOut = false;
    fOutput->moveCursor(QTextCursor::End);
    fOutput->ensureCursorVisible();
}

void TscriptConsole::runInput()
{
    QString text = fInput->toPlainText();
    while (!text.isEmpty() && text.back().isSpace())
        text.chop(1);
    if (text.isEmpty())
        return;
    if (fHistory.empty() || fHistory.back().text != text || fHistory.back().language != language())
        fHistory.push_back({language(), text});
    if (fHistory.size() > kMostRemembered)
        fHistory.erase(fHistory.begin());
    fRecalled = fHistory.size();
    fInput->clear();
    run(language(), text);
}

bool TscriptConsole::needsMore() const
{
    if (language() != TscriptLanguage::kPython)
        return false;
    const QString text = fInput->toPlainText();
    if (!fInput->textCursor().atEnd())
        return text.contains(QLatin1Char('\n'));
    const QString last = text.section(QLatin1Char('\n'), -1).trimmed();
    if (text.contains(QLatin1Char('\n')))
        return !last.isEmpty();
    const auto open = text.count(QLatin1Char('(')) + text.count(QLatin1Char('[')) + text.count(QLatin1Char('{'));
    const auto closed = text.count(QLatin1Char(')')) + text.count(QLatin1Char(']')) + text.count(QLatin1Char('}'));
    return last.endsWith(QLatin1Char(':')) || last.endsWith(QLatin1Char('\\')) || last.startsWith(QLatin1Char('@')) ||
           open > closed;
}

void TscriptConsole::newLine()
{
    QTextCursor cursor = fInput->textCursor();
    const QString line = cursor.block().text().left(cursor.positionInBlock());
    int indent = 0;
    while (indent < line.size() && line[indent] == QLatin1Char(' '))
        ++indent;
    if (language() == TscriptLanguage::kPython && line.trimmed().endsWith(QLatin1Char(':')))
        indent += 4;
    cursor.insertText(QLatin1Char('\n') + QString(indent, QLatin1Char(' ')));
    fInput->ensureCursorVisible();
}

void TscriptConsole::recall(int step)
{
    const auto size = static_cast<long>(fHistory.size());
    const long next = std::clamp(static_cast<long>(fRecalled) + step, 0L, size);
    if (next == static_cast<long>(fRecalled))
        return;
    if (fRecalled == fHistory.size())
        fDraft = fInput->toPlainText();
    fRecalled = static_cast<std::size_t>(next);
    if (next < size)
        setLanguage(fHistory[fRecalled].language);
    fInput->setPlainText(next < size ? fHistory[fRecalled].text : fDraft);
    fInput->moveCursor(QTextCursor::End);
}

bool TscriptConsole::inputKey(QKeyEvent& event)
{
    const QTextCursor cursor = fInput->textCursor();
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!(event.modifiers() & Qt::ControlModifier) && ((event.modifiers() & Qt::ShiftModifier) || needsMore()))
            newLine();
        else
            runInput();
        return true;
    case Qt::Key_Up:
        if (cursor.blockNumber() > 0)
            return false;
        recall(-1);
        return true;
    case Qt::Key_Down:
        if (cursor.blockNumber() + 1 < fInput->document()->blockCount())
            return false;
        recall(1);
        return true;
    case Qt::Key_Tab:
        fInput->textCursor().insertText(QStringLiteral("    "));
        return true;
    case Qt::Key_Escape:
        Q_EMIT left();
        return true;
    default:
        return false;
    }
}

bool TscriptConsole::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto& key = static_cast<QKeyEvent&>(*event);
    if (watched == fInput)
        return inputKey(key);
    if (key.key() == Qt::Key_Escape) {
        Q_EMIT left();
        return true;
    }
    // What is typed while the output has the focus, to copy from it, would work the viewer.
    if (key.text().isEmpty() || !key.text().at(0).isPrint())
        return QWidget::eventFilter(watched, event);
    takeFocus();
    QCoreApplication::sendEvent(fInput, event);
    return true;
}

void TscriptConsole::fitInput()
{
    const int lines = std::clamp(fInput->document()->blockCount(), 1, kInputLines);
    const auto margins = static_cast<int>(2 * fInput->document()->documentMargin()) + 2 * fInput->frameWidth();
    fInput->setFixedHeight(lines * fInput->fontMetrics().lineSpacing() + margins + 2);
}
