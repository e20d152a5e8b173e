// Opening, saving, printing and starting reports in the design window, and its caption.
#include "design/frmPagewright.h"

#include "design/CommandBar.h"
#include "design/DesignHistory.h"
#include "design/RecoveryCopy.h"
#include "design/clsResize.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"
#include "sqltext/clsTempFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {
const QString ReportFilter = QStringLiteral("Report Files (*.rdf);;All Files (*)");

bool IsTemplatePath(const QString& path)
{
    QString p = path;
    p.replace(QLatin1Char('/'), QLatin1Char('\\'));
    return p.contains(QStringLiteral("\\Templates\\"), Qt::CaseInsensitive);
}
} // namespace

QString frmPagewright::ReportsFolderPath() const
{
    if (!gHost)
        return {};
    return LocalPath(gHost->AppPath() + ExpandUserName(m_reportsFolder, gHost->UserName()));
}

QString frmPagewright::ChooseReportFile(const QString& title) const
{
    return Prompts().ChooseOpenFile(title, ReportsFolderPath(), ReportFilter);
}

void frmPagewright::FileError(const QString& fileName, int number, const QString& description) const
{
    MsgBox(QStringLiteral("Error: ") + QString::number(number) + QStringLiteral(" - ") + description +
               QStringLiteral("\nFile: ") + fileName,
           Mb::OKOnly | Mb::Critical, QStringLiteral("Report Designer File error"));
}

void frmPagewright::UpdateCaption()
{
    QString caption = QStringLiteral("Report/Flyer Designer - ") + m_reportFileTitle;
    if (!m_doc->AutoFillId.isEmpty())
        caption += QStringLiteral(" #") + m_doc->AutoFillId;
    setWindowTitle(caption);
}

QString frmPagewright::ChooseReportFile(bool saveMode) const
{
    const QString caption = saveMode ? QStringLiteral("Save") : QStringLiteral("Open");
    if (HasReportFileDialog() && gHost) {
        // The component's own dialog: the user's folder of this kind, and the templates (for
        // saving, only to administrators).
        QStringList lookIns{gHost->UserName()};
        if (!saveMode || gHost->UserLevel() == 100)
            lookIns << QStringLiteral("Templates");
        const auto choice = ReportFileDialog(saveMode, caption, gHost->AppPath() + m_reportsFolder, QStringLiteral("rdf"),
                                             lookIns, QStringLiteral("*.rdf"), m_reportFile);
        return choice ? choice->path : QString();
    }
    const QString folder = ReportsFolderPath();
    if (saveMode) {
        if (!folder.isEmpty())
            QDir().mkpath(folder);
        return Prompts().ChooseSaveFile(caption, folder, ReportFilter);
    }
    return Prompts().ChooseOpenFile(caption, folder, ReportFilter);
}

bool frmPagewright::OpenSaveReport(bool saveMode, const QString& path)
{
    QString file;
    if (saveMode) {
        file = ChooseReportFile(true);
        if (file.isEmpty())
            return false;
        if (QFileInfo(file).suffix().isEmpty())
            file += QStringLiteral(".rdf");
        try {
            if (!m_doc->SaveReport(file, false))
                return false; // the document has said why
        } catch (const HostError& e) {
            FileError(file, e.Number(), e.Description());
            return false;
        }
    } else {
        file = path.isEmpty() ? ChooseReportFile(false) : path;
        if (file.isEmpty())
            return false;
        try {
            m_sel->ClearSelect();
            m_doc->LoadReport(file);
        } catch (const HostError& e) {
            SetMousePointer(0);
            FileError(file, e.Number(), e.Description());
            return false;
        }
        m_bar->ResetToolButtons();
    }
    m_reportFile = file;
    m_reportFileTitle = QFileInfo(file).fileName();
    // A template is a starting point: saving it again asks for a name of the user's own.
    if (IsTemplatePath(m_reportFile))
        m_reportFile.clear();
    UpdateCaption();
    return true;
}

bool frmPagewright::SetReport(const QString& pReportFile, const QString& pReportFileTitle, const QString& PropertyId)
{
    try {
        if (!pReportFile.isEmpty()) {
            m_reportFile = pReportFile;
            m_reportFileTitle = pReportFileTitle;
            if (!OpenSaveReport(false, pReportFile)) {
                m_reportFile.clear();
                m_reportFileTitle = QStringLiteral("Untitled");
                UpdateCaption();
                return false; // the error has been shown; there is no report to show
            }
        }
        if (!PropertyId.isEmpty()) {
            m_doc->AutoFillId = PropertyId;
            m_doc->DataView = true;
            m_doc->RefreshData(PropertyId);
            m_doc->SetView(1);
            m_bar->SetChecked(u"miDataView", true);
            m_bar->SetChecked(u"miTemplateView", false);
        }
        // The report the host handed over starts a history of its own: undo goes back to it as
        // loaded, never to the empty page the window began with.
        if (!pReportFile.isEmpty())
            m_history->Reset();
    } catch (const HostError& e) {
        SetMousePointer(0);
        MsgBox(e.Text(),
               Mb::OKOnly | Mb::Critical, QStringLiteral("Report error"));
    }
    UpdateCaption();
    return true;
}

bool frmPagewright::QuerySaveChanges()
{
    if (m_doc->RptItemCount() == 0 || !m_doc->DirtyFlag)
        return false;
    const QString prompt = m_reportFile.isEmpty()
                               ? QStringLiteral("Do you wish to save your changes?")
                               : QStringLiteral("Do you wish to save changes to\n") + m_reportFile + QStringLiteral("?");
    switch (MsgBox(prompt, Mb::YesNoCancel | Mb::Exclamation, QStringLiteral("Report/Flyer Designer"))) {
    case Mb::No:
        return false;
    case Mb::Yes:
        if (!m_reportFile.isEmpty()) {
            SetMousePointer(11);
            const bool saved = m_doc->SaveReport(m_reportFile, false);
            SetMousePointer(0);
            return !saved; // a failed save keeps the window open, so nothing is lost
        }
        return !OpenSaveReport(true);
    default:
        return true;
    }
}

bool frmPagewright::AdoptRecoveredReport(const QString& copyFile, const QString& reportFile, const QString& title)
{
    try {
        m_sel->ClearSelect();
        m_doc->LoadReport(copyFile);
    } catch (const HostError& e) {
        SetMousePointer(0);
        FileError(copyFile, e.Number(), e.Description());
        return false;
    }
    m_bar->ResetToolButtons();
    m_reportFile = reportFile;
    m_reportFileTitle = title;
    m_doc->SetFileName(reportFile);
    // Unsaved changes of the report, not the report: saving is the user's decision.
    m_doc->DirtyFlag = true;
    // Undo starts at the recovered page (unsaved), not at what the window showed before.
    m_history->Reset();
    UpdateCaption();
    if (m_recovery)
        m_recovery->Update(); // this window's own copy, before the old one goes
    return true;
}

void frmPagewright::NewReport()
{
    m_reportFile.clear();
    m_reportFileTitle = QStringLiteral("Untitled");
    m_doc->UnloadReport();
    m_doc->AutoFillId.clear();
    m_doc->DataView = false;
    m_doc->DirtyFlag = false;
    m_bar->SetChecked(u"miDataView", false);
    m_bar->SetChecked(u"miTemplateView", true);
    m_bar->ResetToolButtons();
    m_doc->SetEdit();
    UpdateCaption();
}

bool frmPagewright::ReportHasItems()
{
    if (m_doc->RptItemCount() > 0)
        return true;
    MsgBox(QStringLiteral("There is nothing on the report to print."), Mb::OKOnly | Mb::Information,
           QStringLiteral("Report/Flyer Designer"));
    return false;
}

void frmPagewright::RunOnPrintCopy(ReportRunRequest request)
{
    const QString file = clsTempFile::FileName(QStringLiteral("~QR"));
    if (file.isEmpty()) {
        FileError(QDir::tempPath(), HostErr::PathNotFound, QStringLiteral("Cannot make a temporary file"));
        return;
    }
    // The temporary copy is the engine's; the user's own file and unsaved state stay as they are.
    struct Cleanup {
        QString path;
        ~Cleanup() { QFile::remove(path); }
    } cleanup{file};
    const bool dirty = m_doc->DirtyFlag;
    bool saved = false;
    {
        const BusyPointer busy(this);
        saved = m_doc->SaveReport(file, false);
    }
    m_doc->DirtyFlag = dirty;
    if (!saved)
        return;
    request.file = file;
    request.title = QFileInfo(m_reportFileTitle).completeBaseName();
    request.databaseKind = m_dic ? m_dic->DatabaseKind() : DictionaryKindOf(m_menuSwitch);
    request.newPagePerRecord = m_doc->NewPage;
    RunReportFile(this, request);
}

void frmPagewright::PrintCommand(bool preview, bool printDialog)
{
    if (!ReportHasItems())
        return;
    if (m_doc->AutoFillId.isEmpty()) {
        if (!PropertyPrompt(*m_doc, QString()) || m_doc->AutoFillId.isEmpty())
            return;
        UpdateCaption();
    }
    ReportRunRequest request;
    request.key = m_doc->AutoFillId;
    request.preview = preview;
    request.printDialog = printDialog;
    RunOnPrintCopy(request);
}
