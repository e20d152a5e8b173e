#pragma once
// The seams through which the designer asks the user anything: message boxes, file choosers,
// colour choosers. The GUI shows Qt dialogs; tests script the answers and read back what was
// asked; batch commands print to stderr and take the default answer.
#include <QColor>
#include <QString>
#include <QStringList>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

// Classic message-box button sets, icons and answers.
namespace Mb {
constexpr int OKOnly = 0, OKCancel = 1, AbortRetryIgnore = 2, YesNoCancel = 3, YesNo = 4, RetryCancel = 5;
constexpr int Critical = 16, Question = 32, Exclamation = 48, Information = 64;
constexpr int DefaultButton2 = 256, DefaultButton3 = 512;
constexpr int OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7;
}

class Prompter {
public:
    virtual ~Prompter() = default;
    // Returns the answer (Mb::OK, Mb::Cancel, ...).
    virtual int MsgBox(const QString& prompt, int buttons, const QString& title) = 0;
    // "" when cancelled. filter is a Qt file-dialog filter such as "Reports (*.rdf)".
    virtual QString ChooseOpenFile(const QString& title, const QString& folder, const QString& filter) = 0;
    virtual QString ChooseSaveFile(const QString& title, const QString& folder, const QString& filter) = 0;
    // colour as 32-bit BGR; nullopt when cancelled.
    virtual std::optional<quint32> ChooseColor(quint32 initialBgr) = 0;
};

// The prompter in use; never null (a batch prompter until the GUI installs its own).
Prompter& Prompts();
void SetPrompter(Prompter* prompter); // null restores the batch prompter

// The classic call, through the seam.
inline int MsgBox(const QString& prompt, int buttons = Mb::OKOnly, const QString& title = QString())
{
    return Prompts().MsgBox(prompt, buttons, title);
}

// Asking for the record a report shows: given the document and its current key (as it stands in
// SQL), shows the record the user chooses; true when a new record was shown or the key cleared.
// The dialogs layer installs the real prompt; without one the answer is "cancelled".
class clsRptControl;
using PropertyPromptFn = std::function<bool(clsRptControl& document, const QString& key)>;
void SetPropertyPrompt(PropertyPromptFn prompt);
bool PropertyPrompt(clsRptControl& document, const QString& key);

// The designer's own Open/Save dialog for report files. folderTemplate is a host path holding
// "~UserName~"; each look-in name ("Templates", the user's name, ...) replaces it to give one
// folder. extension has no dot ("rdf"), pattern lists the folder ("*.rdf"), initialPath (may be
// empty) preselects its folder and name. nullopt when cancelled - or when no dialog is installed,
// which HasReportFileDialog() tells apart.
struct ReportFileChoice {
    QString path;             // the chosen file on this file system
    QString hostPath;         // the same as the host spells it: folder + title + "." + extension
    QString title;            // file name without folder and extension
    bool tableLayout = false; // the dialog's table-layout check box
};
using ReportFileDialogFn = std::function<std::optional<ReportFileChoice>(
    bool saveMode, const QString& caption, const QString& folderTemplate, const QString& extension,
    const QStringList& lookIns, const QString& pattern, const QString& initialPath)>;
void SetReportFileDialog(ReportFileDialogFn dialog); // empty function uninstalls
bool HasReportFileDialog();
std::optional<ReportFileChoice> ReportFileDialog(bool saveMode, const QString& caption, const QString& folderTemplate,
                                                 const QString& extension, const QStringList& lookIns,
                                                 const QString& pattern, const QString& initialPath = QString());

// The print library's report engine, as the design window sees it: a saved report file and one
// record key become a preview or a printout. The output layer installs the real engine; without
// one, RunReportFile() answers false and nothing is printed.
class QWidget;
struct ReportRunRequest {
    QString file;                 // a report file on this file system
    QString key;                  // the record's key as it stands in SQL
    QString title;                // what the printout is called (the report's title)
    int databaseKind = 1;         // the field dictionary's kind
    bool newPagePerRecord = true;
    bool preview = false;         // preview (with printing reachable from it) rather than print
    bool printDialog = false;     // print only after the printer dialog was accepted
    bool many = false;            // File > Print Many: for records the user chooses, not key
};
using ReportRunFn = std::function<bool(QWidget* parent, const ReportRunRequest& request)>;
void SetReportRunner(ReportRunFn runner); // empty function uninstalls
bool HasReportRunner();
bool RunReportFile(QWidget* parent, const ReportRunRequest& request);

// The printer set-up the design window's prints use (installed by the output layer with the
// engine): printer or PDF file, copies and the like, confirmed with OK.
using PrinterSetupFn = std::function<void(QWidget* parent)>;
void SetPrinterSetup(PrinterSetupFn setup); // empty function uninstalls
bool HasPrinterSetup();
void RunPrinterSetup(QWidget* parent);

// The first answer a button set offers (what Enter would press): used by batch runs.
int DefaultAnswer(int buttons);

// Prints messages to stderr and answers with the default button; choosers answer "cancel".
class BatchPrompter : public Prompter {
public:
    int MsgBox(const QString& prompt, int buttons, const QString& title) override;
    QString ChooseOpenFile(const QString&, const QString&, const QString&) override { return {}; }
    QString ChooseSaveFile(const QString&, const QString&, const QString&) override { return {}; }
    std::optional<quint32> ChooseColor(quint32) override { return std::nullopt; }
};

// For tests: answers come from queues, every question is recorded.
class ScriptedPrompter : public Prompter {
public:
    struct Asked {
        QString prompt;
        int buttons = 0;
        QString title;
    };
    ScriptedPrompter() { SetPrompter(this); }
    ~ScriptedPrompter() override { SetPrompter(nullptr); }

    std::deque<int> answers;         // message-box answers; empty → the default button
    std::deque<QString> files;       // file-chooser answers; empty → cancelled
    std::deque<std::optional<quint32>> colors;
    std::vector<Asked> asked;
    QStringList fileTitles;

    int MsgBox(const QString& prompt, int buttons, const QString& title) override;
    QString ChooseOpenFile(const QString& title, const QString& folder, const QString& filter) override;
    QString ChooseSaveFile(const QString& title, const QString& folder, const QString& filter) override;
    std::optional<quint32> ChooseColor(quint32 initialBgr) override;
};

// Qt dialogs, owned by the active window.
class GuiPrompter : public Prompter {
public:
    int MsgBox(const QString& prompt, int buttons, const QString& title) override;
    QString ChooseOpenFile(const QString& title, const QString& folder, const QString& filter) override;
    QString ChooseSaveFile(const QString& title, const QString& folder, const QString& filter) override;
    std::optional<quint32> ChooseColor(quint32 initialBgr) override;
};

// Colours are stored as 32-bit BGR.
inline QColor ColorFromBgr(quint32 bgr) { return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF)); }
inline quint32 BgrFromColor(const QColor& c) { return quint32(c.red()) | (quint32(c.green()) << 8) | (quint32(c.blue()) << 16); }
