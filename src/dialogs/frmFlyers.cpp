#include "dialogs/frmFlyers.h"
#include "help/HelpBook.h"

#include "dialogs/frmListnumPrompt.h"
#include "entry/Host.h"
#include "entry/PrintForm.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QIntValidator>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QUrl>

namespace {

constexpr int kMaxCopies = 9999;

// The hourglass for the length of a scope.
struct Hourglass {
    Hourglass() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Hourglass() { QApplication::restoreOverrideCursor(); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;
};

QPushButton* button(const char* name, const char* text, QWidget* parent)
{
    auto* b = new QPushButton(QString::fromLatin1(text), parent);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);
    return b;
}

} // namespace

frmFlyers::frmFlyers(QWidget* parent) : QWidget(parent, Qt::Window)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Print Flyer"));
    resize(820, 560);

    lblLookIn = new QLabel(QStringLiteral("Look in:"), this);
    cboLookIn = new QComboBox(this);
    cboLookIn->setObjectName(QStringLiteral("cboLookIn"));
    lblLookIn->setBuddy(cboLookIn);
    List1 = new QListWidget(this);
    List1->setObjectName(QStringLiteral("List1"));
    List1->installEventFilter(this);
    Label1 = new QLabel(QStringLiteral("Use the Delete key to delete a Flyer"), this);

    cmdCreateNew = button("cmdCreateNew", "Create New Flyer", this);
    cmdChangeCurrent = button("cmdChangeCurrent", "Edit Current", this);
    cmdChangeNew = button("cmdChangeNew", "Edit New property", this);
    cmdMergePrint = button("cmdMergePrint", "Merge and Print", this);
    cmdPrintCurrent = button("cmdPrintCurrent", "Print Current", this);
    cmdPrintSetup = button("cmdPrintSetup", "Printer Setup", this);
    cmdClose = button("cmdClose", "Close", this);
    cmdHelp = button("cmdHelp", "Help", this);

    lblCopies = new QLabel(QStringLiteral("Copies:"), this);
    txtCopies = new QLineEdit(QStringLiteral("1"), this);
    txtCopies->setObjectName(QStringLiteral("txtCopies"));
    txtCopies->setValidator(new QIntValidator(1, kMaxCopies, txtCopies));
    txtCopies->setMaximumWidth(60);
    lblCopies->setBuddy(txtCopies);
    // The spinner: a bare vertical arrow pair whose up arrow counts up.
    updCopies = new QScrollBar(Qt::Vertical, this);
    updCopies->setObjectName(QStringLiteral("updCopies"));
    updCopies->setRange(1, kMaxCopies);
    updCopies->setInvertedAppearance(true);
    updCopies->setInvertedControls(true);
    updCopies->setFixedHeight(txtCopies->sizeHint().height());
    chkPrintPreview = new QCheckBox(QStringLiteral("Print Preview"), this);
    chkPrintPreview->setObjectName(QStringLiteral("chkPrintPreview"));

    mPrinterForm = NewPrintForm();
    if (mPrinterForm) {
        Vp = mPrinterForm->PreviewPane(this);
    } else {
        auto* none = new QLabel(QStringLiteral("No print library is installed: flyers cannot be previewed or printed."), this);
        none->setWordWrap(true);
        none->setAlignment(Qt::AlignCenter);
        Vp = none;
        for (QPushButton* b : {cmdMergePrint, cmdPrintCurrent, cmdPrintSetup})
            b->setEnabled(false);
    }

    auto* files = new QVBoxLayout;
    auto* lookIn = new QHBoxLayout;
    lookIn->addWidget(lblLookIn);
    lookIn->addWidget(cboLookIn, 1);
    files->addLayout(lookIn);
    files->addWidget(List1, 1);
    files->addWidget(Label1);

    auto* buttons = new QVBoxLayout;
    for (QPushButton* b : {cmdCreateNew, cmdChangeCurrent, cmdChangeNew, cmdMergePrint, cmdPrintCurrent, cmdPrintSetup})
        buttons->addWidget(b);
    auto* copies = new QHBoxLayout;
    copies->addWidget(lblCopies);
    copies->addWidget(txtCopies);
    copies->addWidget(updCopies);
    copies->addStretch();
    buttons->addSpacing(8);
    buttons->addLayout(copies);
    buttons->addWidget(chkPrintPreview);
    buttons->addStretch();
    buttons->addWidget(cmdHelp);
    buttons->addWidget(cmdClose);

    auto* main = new QHBoxLayout(this);
    main->addLayout(files, 2);
    main->addWidget(Vp, 3);
    main->addLayout(buttons);

    connect(cboLookIn, &QComboBox::activated, this, [this] { FillFileList(); });
    connect(List1, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0)
            List1_Click();
    });
    connect(List1, &QListWidget::itemDoubleClicked, this, [this] { cmdChangeCurrent_Click(); });
    connect(cmdCreateNew, &QPushButton::clicked, this, &frmFlyers::cmdCreateNew_Click);
    connect(cmdChangeCurrent, &QPushButton::clicked, this, &frmFlyers::cmdChangeCurrent_Click);
    connect(cmdChangeNew, &QPushButton::clicked, this, &frmFlyers::cmdChangeNew_Click);
    connect(cmdMergePrint, &QPushButton::clicked, this, &frmFlyers::cmdMergePrint_Click);
    connect(cmdPrintCurrent, &QPushButton::clicked, this, &frmFlyers::cmdPrintCurrent_Click);
    connect(cmdPrintSetup, &QPushButton::clicked, this, &frmFlyers::cmdPrintSetup_Click);
    connect(cmdClose, &QPushButton::clicked, this, &frmFlyers::cmdClose_Click);
    connect(cmdHelp, &QPushButton::clicked, this, &frmFlyers::cmdHelp_Click);
    connect(txtCopies, &QLineEdit::editingFinished, this, &frmFlyers::txtCopies_LostFocus);
    connect(updCopies, &QScrollBar::valueChanged, this, [this](int v) {
        txtCopies->setText(QString::number(v));
        txtCopies_LostFocus();
    });
    if (mPrinterForm)
        connect(mPrinterForm.get(), &PrintForm::Copies, this, &frmFlyers::showCopies);
}

frmFlyers::~frmFlyers() = default;

void frmFlyers::Init(int jobIndex)
{
    JobIndex = jobIndex;
    showCopies(mPrinterForm ? mPrinterForm->GetCopies() : 1);
    FlyerRoot = gHost->AppPath() + QStringLiteral("users\\~UserName~\\Reports\\Flyers\\");
    FlyerExt = QStringLiteral(".rdf");
    cboLookIn->clear();
    cboLookIn->addItems({QStringLiteral("Templates"), QStringLiteral("Office"), gHost->UserName()});
    cboLookIn->setCurrentIndex(0);
    FillFileList();
}

void frmFlyers::FillFileList()
{
    {
        const QSignalBlocker block(List1);
        List1->clear();
    }
    SelectedFlyer.clear();
    if (mPrinterForm)
        mPrinterForm->LoadPreview(QString());
    FlyerFolder = QString(FlyerRoot).replace(QLatin1String("~UserName~"), cboLookIn->currentText());
    // Name order, ignoring case, as the host's own file system lists a folder.
    QDir dir(LocalPath(FlyerFolder));
    const QStringList names = dir.entryList({QLatin1Char('*') + FlyerExt}, QDir::Files, QDir::Name | QDir::IgnoreCase);
    const QSignalBlocker block(List1);
    for (const QString& n : names)
        List1->addItem(n.left(n.lastIndexOf(QLatin1Char('.'))));
    List1->setCurrentRow(-1);
}

QString frmFlyers::selectedFile() const { return LocalPath(FlyerFolder + SelectedFlyer); }

void frmFlyers::List1_Click()
{
    QListWidgetItem* item = List1->currentItem();
    if (!item)
        return;
    Hourglass busy;
    SelectedFlyer = item->text() + FlyerExt;
    if (mPrinterForm)
        mPrinterForm->LoadPreview(selectedFile());
}

QString frmFlyers::ListingExistsSql(const QString& ListNum, const QString& statusList)
{
    QString sql = QStringLiteral("SELECT Count(*) AS RecCount FROM Listings WHERE ListNum = ") + ListNum + QStringLiteral(";");
    if (!statusList.isEmpty()) {
        sql.chop(1);
        sql += QStringLiteral(" AND CLng(LstStatus) NOT IN (") + statusList + QStringLiteral(");");
    }
    return sql;
}

bool frmFlyers::ListingExists(const QString& ListNum)
{
    std::unique_ptr<Recordset> rs =
        gHost->Database().OpenRecordset(1, ListingExistsSql(ListNum, gHost->StatusList()), 3, 1, 1);
    const bool found = !rs->Eof() && rs->Fields(QStringLiteral("RecCount")).toLongLong() != 0;
    rs->Close();
    return found;
}

void frmFlyers::notFound(const QString& ListNum) { MsgBox(ListNum + QStringLiteral(" Not Found"), Mb::OKOnly); }

void frmFlyers::openDesignWindow(const QString& file, const QString& title, const QString& propertyId)
{
    DesignWindow* w = NewDesignWindow();
    if (!w) {
        MsgBox(QStringLiteral("The report designer is not available"), Mb::OKOnly | Mb::Exclamation,
               QStringLiteral("Print Flyer"));
        return;
    }
    bool ok = false;
    const int kind = gHost->MainForm().Switch().toInt(&ok);
    w->Init(-1, ok ? kind : 0, false);
    w->SetReport(file, title, propertyId);
    if (QWidget* widget = w->Widget()) {
        if (QWidget* owner = gHost->MainForm().Window())
            widget->setParent(owner, Qt::Window);
        widget->show();
    }
}

void frmFlyers::cmdChangeCurrent_Click()
{
    if (SelectedFlyer.isEmpty())
        return;
    Hourglass busy;
    openDesignWindow(selectedFile(), SelectedFlyer, QString());
}

void frmFlyers::cmdChangeNew_Click()
{
    if (SelectedFlyer.isEmpty())
        return;
    const QString ListNum = frmListnumPrompt::Display(false);
    if (ListNum.isEmpty())
        return;
    bool exists = false;
    {
        Hourglass busy;
        exists = ListingExists(ListNum);
        if (exists)
            openDesignWindow(selectedFile(), SelectedFlyer, ListNum);
    }
    if (!exists)
        notFound(ListNum);
}

void frmFlyers::cmdCreateNew_Click()
{
    const QString ListNum = frmListnumPrompt::Display(false);
    if (ListNum.isEmpty())
        return;
    if (ListingExists(ListNum))
        openDesignWindow(QString(), QString(), ListNum);
    else
        notFound(ListNum);
}

void frmFlyers::cmdMergePrint_Click()
{
    if (SelectedFlyer.isEmpty())
        return;
    const QString ListNum = frmListnumPrompt::Display(false);
    if (ListNum.isEmpty())
        return;
    if (ListingExists(ListNum))
        PrintFlyer(ListNum);
    else
        notFound(ListNum);
}

void frmFlyers::cmdPrintCurrent_Click()
{
    if (!SelectedFlyer.isEmpty())
        PrintFlyer(QString());
}

void frmFlyers::PrintFlyer(const QString& ListNum)
{
    if (!mPrinterForm)
        return;
    mPrinterForm->SetReportFile(selectedFile());
    QStringList keys;
    mPrinterForm->SetTemplateOnly(ListNum.isEmpty());
    keys << (ListNum.isEmpty() ? QString() : QStringLiteral("0") + ListNum);
    mPrinterForm->SetPreview(chkPrintPreview->isChecked());
    mPrinterForm->PrintList(keys, 1, false);
}

void frmFlyers::cmdPrintSetup_Click()
{
    if (SelectedFlyer.isEmpty() || !mPrinterForm)
        return;
    mPrinterForm->PrinterSetup(this);
}

// Close and Help work with or without a selected flyer: a Close button that ignores the user
// would only send them looking for the title bar.
void frmFlyers::cmdClose_Click()
{
    close(); // query-unload tells the host
}

void frmFlyers::cmdHelp_Click()
{
    ShowHelp(this, HelpContextId);
}

void frmFlyers::DeleteFlyer()
{
    QListWidgetItem* item = List1->currentItem();
    if (!item || SelectedFlyer.isEmpty())
        return;
    if (FlyerFolder.contains(QLatin1String("\\Templates\\"))) {
        MsgBox(QStringLiteral("You cannot delete a system template file"), Mb::OKOnly | Mb::Exclamation,
               QStringLiteral("Flyer Delete"));
        return;
    }
    const QString name = item->text();
    if (MsgBox(QStringLiteral("Are you sure you wish do delete '") + name + QStringLiteral("'?"), Mb::YesNo | Mb::Exclamation,
               QStringLiteral("Flyer - Confirm Delete")) != Mb::Yes)
        return;
    if (!QFile::remove(LocalPath(FlyerFolder + name + FlyerExt)))
        return;
    {
        const QSignalBlocker block(List1);
        delete List1->takeItem(List1->row(item));
        List1->setCurrentRow(-1);
    }
    if (mPrinterForm)
        mPrinterForm->LoadPreview(QString());
    if (FlyerExt.toUpper() == QLatin1String(".RDF")) {
        // The flyer's pictures: NAME~???.jpg in the graphics folder.
        const QRegularExpression own(QLatin1Char('^') + QRegularExpression::escape(name) + QStringLiteral("~...\\.jpg$"),
                                     QRegularExpression::CaseInsensitiveOption);
        QDir graphics(LocalPath(gHost->AppPath() + QStringLiteral("Graphics\\")));
        for (const QString& f : graphics.entryList(QDir::Files))
            if (own.match(f).hasMatch())
                graphics.remove(f);
    }
    SelectedFlyer.clear();
}

void frmFlyers::txtCopies_LostFocus()
{
    bool ok = false;
    const int n = txtCopies->text().toInt(&ok);
    if (!ok || n < 1) {
        // An empty or impossible number goes back to what the print form has.
        showCopies(mPrinterForm ? mPrinterForm->GetCopies() : 1);
        return;
    }
    if (mPrinterForm)
        mPrinterForm->SetCopies(n);
    showCopies(n);
}

void frmFlyers::showCopies(int copies)
{
    if (txtCopies->text() != QString::number(copies))
        txtCopies->setText(QString::number(copies));
    const QSignalBlocker block(updCopies);
    updCopies->setValue(copies);
}

bool frmFlyers::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == List1 && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Delete) {
            DeleteFlyer();
            return true;
        }
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && List1->currentItem()) {
            cmdChangeCurrent_Click();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmFlyers::closeEvent(QCloseEvent* event)
{
    // The host asked us to go (Unload) or has been told already: do not tell it again.
    if (!m_unloading && !m_jobClosed && gHost) {
        m_jobClosed = true;
        m_unloading = true; // the host may unload us from inside CloseJob
        gHost->CloseJob(JobIndex);
    }
    event->accept();
}

void frmFlyers::Unload()
{
    if (m_unloaded)
        return;
    m_unloaded = m_unloading = true;
    close();
}

void RegisterFlyerWindow()
{
    SetFlyerWindowFactory([] { return new frmFlyers; });
}
