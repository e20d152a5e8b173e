#pragma once
// The designer's own Open/Save dialog for report files. It never browses the disk: it lists one
// folder of the report kind at a time, chosen by a look-in name that replaces "~UserName~" in a
// folder template, and shows file names without their extension. Folders are host paths ("\");
// the disk is reached through LocalPath.
#include "entry/Prompts.h"

#include <QDialog>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

class frmSaveRecall : public QDialog {
    Q_OBJECT
public:
    explicit frmSaveRecall(QWidget* parent = nullptr);

    // Prepare, show modal, and report the choice; false when cancelled. initialPath may be empty.
    bool ShowOpen(const QString& folderTemplate, const QString& extension, const QStringList& lookIns,
                  const QString& pattern, const QString& initialPath);
    bool ShowSave(const QString& folderTemplate, const QString& extension, const QStringList& lookIns,
                  const QString& pattern, const QString& initialPath);

    // The steps of ShowOpen/ShowSave without the modal loop, for driving the dialog in tests.
    void PrepareOpen(const QString& folderTemplate, const QString& extension, const QStringList& lookIns,
                     const QString& pattern, const QString& initialPath);
    void PrepareSave(const QString& folderTemplate, const QString& extension, const QStringList& lookIns,
                     const QString& pattern, const QString& initialPath);

    // One whole run as the report file seam asks for it: caption (empty keeps "Save/Open"),
    // mode, folders; nullopt when cancelled.
    static std::optional<ReportFileChoice> Start(bool saveMode, const QString& caption, const QString& folderTemplate,
                                                 const QString& extension, const QStringList& lookIns,
                                                 const QString& pattern, const QString& initialPath);
    // What a closed dialog reports; nullopt when it was cancelled.
    std::optional<ReportFileChoice> Choice() const;

    // Folder & FileTitle & "." & Extension, host spelling.
    QString FullFileName() const;
    QString FileTitle() const { return m_fileTitle; }
    QString Folder() const { return m_folder; }
    bool OpenMode() const { return m_openMode; }
    bool SaveMode() const { return m_saveMode; }
    bool Cancelled() const { return m_cancelled; }

    void cboLookIn_Click();
    void List1_Click();
    void cmdOk_Click();
    void List1_Delete();
    void cmdHelp_Click();
    void reject() override;

    QLabel* lblLookIn = nullptr;
    QComboBox* cboLookIn = nullptr;
    QLabel* lblCurFolder = nullptr;
    QListWidget* List1 = nullptr;
    QLabel* Label3 = nullptr;
    QLabel* Label1 = nullptr;
    QLineEdit* txtFileName = nullptr;
    QCheckBox* chkTableLayout = nullptr;
    QPushButton* cmdOk = nullptr;
    QPushButton* cmdSave = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdHelp = nullptr;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Prepare(const QString& folderTemplate, const QString& extension, const QStringList& lookIns,
                 const QString& pattern, const QString& initialPath);
    int ListIndexOf(const QString& name) const; // -1 when absent; ignores case

    QString m_fileTitle;
    QString m_folder;
    QString m_pattern;
    QString m_extension;
    QString m_folderTemplate;
    bool m_openMode = false;
    bool m_saveMode = false;
    bool m_cancelled = false;
};

// Routes the designer's report file dialog (ReportFileDialog in entry/Prompts.h) to
// frmSaveRecall. Called once when the GUI starts.
void InstallReportFileDialog();
