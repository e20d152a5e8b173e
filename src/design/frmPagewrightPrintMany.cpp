// File > Print Many: the report printed for many records at once. The records are chosen and
// the pages streamed by the report runner; the window hands it a copy of the report as it is.
#include "design/frmPagewright.h"

#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"
#include "sqltext/clsTempFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

void frmPagewright::PrintManyCommand()
{
    if (m_doc->RptItemCount() == 0) {
        MsgBox(QStringLiteral("There is nothing on the report to print."), Mb::OKOnly | Mb::Information,
               QStringLiteral("Report/Flyer Designer"));
        return;
    }
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
    const bool saved = m_doc->SaveReport(file, false);
    m_doc->DirtyFlag = dirty;
    if (!saved)
        return;
    ReportRunRequest request;
    request.file = file;
    request.title = QFileInfo(m_reportFileTitle).completeBaseName();
    request.databaseKind = m_dic ? m_dic->DatabaseKind() : DictionaryKindOf(m_menuSwitch);
    request.newPagePerRecord = m_doc->NewPage;
    request.many = true;
    RunReportFile(this, request);
}
