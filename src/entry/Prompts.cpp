#include "entry/Prompts.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <cstdio>

namespace {
BatchPrompter g_batch;
Prompter* g_current = nullptr;
}

Prompter& Prompts() { return g_current ? *g_current : g_batch; }
void SetPrompter(Prompter* prompter) { g_current = prompter; }

namespace {
PropertyPromptFn& PropertyPromptHandler()
{
    static PropertyPromptFn handler;
    return handler;
}
} // namespace

void SetPropertyPrompt(PropertyPromptFn prompt) { PropertyPromptHandler() = std::move(prompt); }

bool PropertyPrompt(clsRptControl& document, const QString& key)
{
    const PropertyPromptFn& handler = PropertyPromptHandler();
    return handler ? handler(document, key) : false;
}

namespace {
ReportFileDialogFn& ReportFileDialogHandler()
{
    static ReportFileDialogFn handler;
    return handler;
}
} // namespace

void SetReportFileDialog(ReportFileDialogFn dialog) { ReportFileDialogHandler() = std::move(dialog); }
bool HasReportFileDialog() { return bool(ReportFileDialogHandler()); }

std::optional<ReportFileChoice> ReportFileDialog(bool saveMode, const QString& caption, const QString& folderTemplate,
                                                 const QString& extension, const QStringList& lookIns,
                                                 const QString& pattern, const QString& initialPath)
{
    const ReportFileDialogFn& handler = ReportFileDialogHandler();
    if (!handler)
        return std::nullopt;
    return handler(saveMode, caption, folderTemplate, extension, lookIns, pattern, initialPath);
}

namespace {
ReportRunFn& ReportRunHandler()
{
    static ReportRunFn handler;
    return handler;
}
} // namespace

void SetReportRunner(ReportRunFn runner) { ReportRunHandler() = std::move(runner); }
bool HasReportRunner() { return bool(ReportRunHandler()); }

bool RunReportFile(QWidget* parent, const ReportRunRequest& request)
{
    const ReportRunFn& handler = ReportRunHandler();
    return handler ? handler(parent, request) : false;
}

namespace {
PrinterSetupFn& PrinterSetupHandler()
{
    static PrinterSetupFn handler;
    return handler;
}
} // namespace

void SetPrinterSetup(PrinterSetupFn setup) { PrinterSetupHandler() = std::move(setup); }
bool HasPrinterSetup() { return bool(PrinterSetupHandler()); }
void RunPrinterSetup(QWidget* parent)
{
    if (const PrinterSetupFn& handler = PrinterSetupHandler())
        handler(parent);
}

int DefaultAnswer(int buttons)
{
    const int set = buttons & 7;
    const int def = (buttons & Mb::DefaultButton3) ? 2 : (buttons & Mb::DefaultButton2) ? 1 : 0;
    static const int sets[6][3] = {{Mb::OK, Mb::OK, Mb::OK},       {Mb::OK, Mb::Cancel, Mb::Cancel},
                                   {Mb::Abort, Mb::Retry, Mb::Ignore}, {Mb::Yes, Mb::No, Mb::Cancel},
                                   {Mb::Yes, Mb::No, Mb::No},       {Mb::Retry, Mb::Cancel, Mb::Cancel}};
    return set < 6 ? sets[set][def] : Mb::OK;
}

int BatchPrompter::MsgBox(const QString& prompt, int buttons, const QString& title)
{
    const QString line = title.isEmpty() ? prompt : title + QStringLiteral(": ") + prompt;
    std::fprintf(stderr, "%s\n", qPrintable(line));
    return DefaultAnswer(buttons);
}

int ScriptedPrompter::MsgBox(const QString& prompt, int buttons, const QString& title)
{
    asked.push_back({prompt, buttons, title});
    if (answers.empty())
        return DefaultAnswer(buttons);
    const int a = answers.front();
    answers.pop_front();
    return a;
}

QString ScriptedPrompter::ChooseOpenFile(const QString& title, const QString&, const QString&)
{
    fileTitles << title;
    if (files.empty())
        return {};
    QString f = files.front();
    files.pop_front();
    return f;
}

QString ScriptedPrompter::ChooseSaveFile(const QString& title, const QString& folder, const QString& filter)
{
    return ChooseOpenFile(title, folder, filter);
}

std::optional<quint32> ScriptedPrompter::ChooseColor(quint32)
{
    if (colors.empty())
        return std::nullopt;
    auto c = colors.front();
    colors.pop_front();
    return c;
}

int GuiPrompter::MsgBox(const QString& prompt, int buttons, const QString& title)
{
    QMessageBox box(QApplication::activeWindow());
    box.setText(prompt);
    box.setWindowTitle(title.isEmpty() ? QApplication::applicationDisplayName() : title);
    switch (buttons & 0x70) {
    case Mb::Critical: box.setIcon(QMessageBox::Critical); break;
    case Mb::Question: box.setIcon(QMessageBox::Question); break;
    case Mb::Exclamation: box.setIcon(QMessageBox::Warning); break;
    case Mb::Information: box.setIcon(QMessageBox::Information); break;
    default: break;
    }
    struct B { int answer; QMessageBox::StandardButton button; };
    static const std::vector<std::vector<B>> sets = {
        {{Mb::OK, QMessageBox::Ok}},
        {{Mb::OK, QMessageBox::Ok}, {Mb::Cancel, QMessageBox::Cancel}},
        {{Mb::Abort, QMessageBox::Abort}, {Mb::Retry, QMessageBox::Retry}, {Mb::Ignore, QMessageBox::Ignore}},
        {{Mb::Yes, QMessageBox::Yes}, {Mb::No, QMessageBox::No}, {Mb::Cancel, QMessageBox::Cancel}},
        {{Mb::Yes, QMessageBox::Yes}, {Mb::No, QMessageBox::No}},
        {{Mb::Retry, QMessageBox::Retry}, {Mb::Cancel, QMessageBox::Cancel}},
    };
    const auto& set = sets[size_t(std::min(buttons & 7, 5))];
    const int defIndex = std::min<int>((buttons & Mb::DefaultButton3) ? 2 : (buttons & Mb::DefaultButton2) ? 1 : 0, int(set.size()) - 1);
    for (size_t i = 0; i < set.size(); ++i) {
        box.addButton(set[i].button);
        if (int(i) == defIndex)
            box.setDefaultButton(set[i].button);
    }
    const auto pressed = box.exec();
    for (const B& b : set)
        if (b.button == pressed)
            return b.answer;
    // Closing the box with Escape or the title bar: Cancel where offered, else the only button.
    for (const B& b : set)
        if (b.answer == Mb::Cancel)
            return Mb::Cancel;
    return set.back().answer;
}

QString GuiPrompter::ChooseOpenFile(const QString& title, const QString& folder, const QString& filter)
{
    return QFileDialog::getOpenFileName(QApplication::activeWindow(), title, folder, filter);
}

QString GuiPrompter::ChooseSaveFile(const QString& title, const QString& folder, const QString& filter)
{
    return QFileDialog::getSaveFileName(QApplication::activeWindow(), title, folder, filter);
}

std::optional<quint32> GuiPrompter::ChooseColor(quint32 initialBgr)
{
    const QColor c = QColorDialog::getColor(ColorFromBgr(initialBgr), QApplication::activeWindow());
    if (!c.isValid())
        return std::nullopt;
    return BgrFromColor(c);
}
