#include "dialogs/frmSaveRecall.h"
#include "help/HelpBook.h"
#include "help/HelpContexts.h"

#include "entry/Host.h"
#include "entry/ReportKinds.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QUrl>
#include <QVBoxLayout>

namespace {
const QString UserNameToken = QStringLiteral("~UserName~");

// A name without its extension: everything before the last ".".
QString StripExtension(const QString& fileName)
{
    const int dot = fileName.lastIndexOf(QLatin1Char('.'));
    return dot >= 0 ? fileName.left(dot) : fileName;
}
} // namespace

frmSaveRecall::frmSaveRecall(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Save/Open"));
    lblLookIn = new QLabel(QStringLiteral("Look in:"), this);
    cboLookIn = new QComboBox(this);
    lblCurFolder = new QLabel(this);
    lblCurFolder->setTextInteractionFlags(Qt::TextSelectableByMouse);
    List1 = new QListWidget(this);
    List1->setSelectionMode(QAbstractItemView::SingleSelection);
    List1->installEventFilter(this);
    Label3 = new QLabel(QStringLiteral("Press the Delete key to delete."), this);
    Label1 = new QLabel(QStringLiteral("File Name:"), this);
    txtFileName = new QLineEdit(this);
    // Characters that would leave the folder or form a pattern are refused, typed or pasted.
    txtFileName->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[^*:?./\\\\<>|]*")), txtFileName));
    Label1->setBuddy(txtFileName);
    chkTableLayout = new QCheckBox(this);
    cmdOk = new QPushButton(QStringLiteral("&Open"), this);
    cmdOk->setDefault(true);
    // ShowSave relabels cmdOk instead; this one stays hidden but does the same.
    cmdSave = new QPushButton(QStringLiteral("Save"), this);
    cmdSave->hide();
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdHelp = new QPushButton(QStringLiteral("&Help"), this);
    for (QPushButton* b : {cmdSave, cmdCancel, cmdHelp})
        b->setAutoDefault(false);

    auto* top = new QHBoxLayout;
    top->addWidget(lblLookIn);
    top->addWidget(cboLookIn, 1);
    auto* name = new QHBoxLayout;
    name->addWidget(Label1);
    name->addWidget(txtFileName, 1);
    auto* buttons = new QVBoxLayout;
    for (QPushButton* b : {cmdOk, cmdSave, cmdCancel, cmdHelp})
        buttons->addWidget(b);
    buttons->addStretch(1);
    auto* lay = new QGridLayout(this);
    lay->addLayout(top, 0, 0);
    lay->addWidget(lblCurFolder, 1, 0);
    lay->addWidget(List1, 2, 0);
    lay->addWidget(Label3, 3, 0);
    lay->addLayout(name, 4, 0);
    lay->addWidget(chkTableLayout, 5, 0);
    lay->addLayout(buttons, 0, 1, 6, 1);
    resize(440, 340);

    connect(cboLookIn, &QComboBox::currentIndexChanged, this, [this] { cboLookIn_Click(); });
    // Selection, not the current row: tabbing into the list must not overwrite a typed name.
    connect(List1, &QListWidget::itemSelectionChanged, this, [this] { List1_Click(); });
    connect(List1, &QListWidget::itemClicked, this, [this] { List1_Click(); });
    connect(List1, &QListWidget::itemDoubleClicked, this, [this] {
        List1_Click();
        cmdOk_Click();
    });
    // Typing a name in a folder that has files is as good as picking one.
    connect(txtFileName, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (m_openMode && List1->count() > 0)
            cmdOk->setEnabled(!text.isEmpty());
    });
    connect(cmdOk, &QPushButton::clicked, this, &frmSaveRecall::cmdOk_Click);
    connect(cmdSave, &QPushButton::clicked, this, &frmSaveRecall::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmSaveRecall::reject);
    connect(cmdHelp, &QPushButton::clicked, this, &frmSaveRecall::cmdHelp_Click);
}

void frmSaveRecall::PrepareOpen(const QString& folderTemplate, const QString& extension, const QStringList& lookIns,
                                const QString& pattern, const QString& initialPath)
{
    m_openMode = true;
    m_saveMode = false;
    cmdOk->setText(QStringLiteral("&Open"));
    lblLookIn->setText(QStringLiteral("Look in:"));
    chkTableLayout->setText(QStringLiteral("Open with Table Layout"));
    Prepare(folderTemplate, extension, lookIns, pattern, initialPath);
}

void frmSaveRecall::PrepareSave(const QString& folderTemplate, const QString& extension, const QStringList& lookIns,
                                const QString& pattern, const QString& initialPath)
{
    cmdOk->setText(QStringLiteral("Save"));
    lblLookIn->setText(QStringLiteral("Save in:"));
    chkTableLayout->setText(QStringLiteral("Save Table Layout"));
    m_saveMode = true;
    m_openMode = false;
    cmdOk->setEnabled(true);
    Prepare(folderTemplate, extension, lookIns, pattern, initialPath);
}

bool frmSaveRecall::ShowOpen(const QString& folderTemplate, const QString& extension, const QStringList& lookIns,
                             const QString& pattern, const QString& initialPath)
{
    PrepareOpen(folderTemplate, extension, lookIns, pattern, initialPath);
    exec();
    return !m_cancelled;
}

bool frmSaveRecall::ShowSave(const QString& folderTemplate, const QString& extension, const QStringList& lookIns,
                             const QString& pattern, const QString& initialPath)
{
    PrepareSave(folderTemplate, extension, lookIns, pattern, initialPath);
    exec();
    return !m_cancelled;
}

void frmSaveRecall::Prepare(const QString& folderTemplate, const QString& extension, const QStringList& lookIns,
                            const QString& pattern, const QString& initialPath)
{
    m_pattern = pattern;
    m_extension = extension.startsWith(QLatin1Char('.')) ? extension.mid(1) : extension;
    m_folderTemplate = folderTemplate;
    m_cancelled = false;
    m_fileTitle.clear();

    // The look-in name is the segment of the path that stands where the token stands in the template.
    QString lookIn;
    if (!initialPath.isEmpty()) {
        QString path = initialPath;
        path.replace(QLatin1Char('/'), QLatin1Char('\\'));
        const int at = m_folderTemplate.indexOf(UserNameToken, 0, Qt::CaseInsensitive);
        if (at >= 0 && at < path.size()) {
            const int end = path.indexOf(QLatin1Char('\\'), at);
            lookIn = path.mid(at, end < 0 ? -1 : end - at);
        }
        const int slash = path.lastIndexOf(QLatin1Char('\\'));
        m_folder = path.left(slash + 1);
        m_fileTitle = StripExtension(path.mid(slash + 1));
    }

    QStringList names = lookIns;
    if (names.isEmpty() && gHost)
        names << gHost->UserName();
    {
        const QSignalBlocker block(cboLookIn);
        cboLookIn->clear();
        cboLookIn->addItems(names);
        int match = -1;
        for (int i = 0; i < names.size() && match < 0 && !lookIn.isEmpty(); ++i)
            if (names[i].compare(lookIn, Qt::CaseInsensitive) == 0) // host paths ignore case
                match = i;
        cboLookIn->setCurrentIndex(names.isEmpty() ? -1 : qMax(match, 0));
    }
    cboLookIn_Click();
    // An empty shared "Default" folder is no place to start.
    if (cboLookIn->count() >= 2 && cboLookIn->currentText() == QLatin1String("Default") && List1->count() == 0)
        cboLookIn->setCurrentIndex(1);

    txtFileName->setText(m_fileTitle);
    const int listed = ListIndexOf(m_fileTitle);
    if (!m_fileTitle.isEmpty() && listed >= 0)
        List1->setCurrentRow(listed);
    txtFileName->setFocus();
}

void frmSaveRecall::cboLookIn_Click()
{
    List1->clear();
    if (m_openMode)
        cmdOk->setEnabled(false);
    if (cboLookIn->currentIndex() < 0)
        return;
    m_folder = ExpandUserName(m_folderTemplate, cboLookIn->currentText());
    lblCurFolder->setText(DisplayPath(m_folder));
    const QDir dir(LocalPath(m_folder));
    const QStringList pattern = m_pattern.isEmpty() ? QStringList() : QStringList{m_pattern};
    // Case-blind both in the pattern and in the order, as the host's file system is.
    const QStringList files = dir.entryList(pattern, QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase);
    for (const QString& file : files)
        List1->addItem(StripExtension(file));
}

void frmSaveRecall::List1_Click()
{
    const QListWidgetItem* item = List1->currentItem();
    if (!item || !item->isSelected())
        return;
    txtFileName->setText(item->text());
    cmdOk->setEnabled(true);
}

int frmSaveRecall::ListIndexOf(const QString& name) const
{
    for (int i = 0; i < List1->count(); ++i)
        if (List1->item(i)->text().compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

void frmSaveRecall::cmdOk_Click()
{
    const QString name = txtFileName->text();
    if (name.trimmed().isEmpty() || !cmdOk->isEnabled())
        return;
    if (m_saveMode && ListIndexOf(name) >= 0) {
        if (MsgBox(name + QStringLiteral(" already exists.\nDo you want to replace it?"), Mb::YesNo | Mb::Question,
                   QStringLiteral("Save As")) != Mb::Yes)
            return;
    }
    if (m_openMode && ListIndexOf(name) < 0) {
        MsgBox(name + QStringLiteral(" was not found.\nPlease verify that the correct name was given."),
               Mb::OKOnly | Mb::Exclamation, QStringLiteral("Open"));
        txtFileName->setFocus();
        return;
    }
    m_fileTitle = name;
    m_cancelled = false;
    accept();
}

void frmSaveRecall::List1_Delete()
{
    const QListWidgetItem* item = List1->currentItem();
    if (!item || !item->isSelected())
        return;
    const QString name = item->text();
    if (MsgBox(QStringLiteral("Are you sure you wish do delete '") + name + QStringLiteral("'?"),
               Mb::YesNo | Mb::Exclamation, QStringLiteral("Confirm Delete")) != Mb::Yes)
        return;
    const QString hostPath = m_folder + name + QLatin1Char('.') + m_extension;
    QFile file(LocalPath(hostPath));
    if (!file.remove()) {
        // Keep the entry: the file is still there, or never was under that extension.
        MsgBox(QStringLiteral("'") + name + QStringLiteral("' could not be deleted.\n") + file.errorString(),
               Mb::OKOnly | Mb::Critical, QStringLiteral("Confirm Delete"));
        return;
    }
    {
        const QSignalBlocker block(List1);
        delete List1->takeItem(List1->row(item));
        List1->clearSelection();
        List1->setCurrentRow(-1);
    }
    txtFileName->clear();
    if (m_openMode && List1->count() == 0)
        cmdOk->setEnabled(false);
}

void frmSaveRecall::cmdHelp_Click()
{
    ShowHelp(this, HelpContext::ReportFiles);
}

void frmSaveRecall::reject()
{
    m_cancelled = true;
    QDialog::reject();
}

bool frmSaveRecall::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == List1 && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
        List1_Delete();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

QString frmSaveRecall::FullFileName() const
{
    return m_folder + m_fileTitle + QLatin1Char('.') + m_extension;
}

std::optional<ReportFileChoice> frmSaveRecall::Choice() const
{
    if (m_cancelled || result() != QDialog::Accepted)
        return std::nullopt;
    ReportFileChoice c;
    c.hostPath = FullFileName();
    c.path = LocalPath(c.hostPath);
    c.title = m_fileTitle;
    c.tableLayout = chkTableLayout->isChecked();
    return c;
}

std::optional<ReportFileChoice> frmSaveRecall::Start(bool saveMode, const QString& caption,
                                                     const QString& folderTemplate, const QString& extension,
                                                     const QStringList& lookIns, const QString& pattern,
                                                     const QString& initialPath)
{
    frmSaveRecall dialog(gHost ? gHost->MainForm().Window() : nullptr);
    if (!caption.isEmpty())
        dialog.setWindowTitle(caption);
    if (saveMode)
        dialog.ShowSave(folderTemplate, extension, lookIns, pattern, initialPath);
    else
        dialog.ShowOpen(folderTemplate, extension, lookIns, pattern, initialPath);
    std::optional<ReportFileChoice> choice = dialog.Choice();
    // A user's folder may not exist before the first save into it.
    if (choice && saveMode)
        QDir().mkpath(QFileInfo(choice->path).absolutePath());
    return choice;
}

void InstallReportFileDialog()
{
    SetReportFileDialog([](bool saveMode, const QString& caption, const QString& folderTemplate,
                           const QString& extension, const QStringList& lookIns, const QString& pattern,
                           const QString& initialPath) {
        return frmSaveRecall::Start(saveMode, caption, folderTemplate, extension, lookIns, pattern, initialPath);
    });
}
