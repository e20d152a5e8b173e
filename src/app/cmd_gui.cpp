// Starting the designer: the embedded host on the data folder, then the component as a host
// would start it. The program ends when the host's job is closed.
#include "DemoFlyers.h"
#include "Subcommands.h"

#include "design/frmPagewright.h"
#include "dialogs/frmFlyers.h"
#include "dialogs/frmPropertyPrompt.h"
#include "dialogs/frmSaveRecall.h"
#include "entry/PrintForm.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"
#include "entry/clsReportDesign.h"
#include "host/DataFolder.h"
#include "host/DemoData.h"
#include "help/HelpBook.h"
#include "host/EmbeddedHost.h"
#include "output/ReportEngine.h"
#include "output/ReportPrintForm.h"

#include <QApplication>
#include <QFileInfo>
#include <cstdio>

int RunDesigner(int argc, char** argv)
{
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Pagewright"));
    QStringList args = QCoreApplication::arguments().mid(1);

    const QString dir = DataFolder::ResolveDataFolder(args);
    const QString kindName = TakeOption(args, QStringLiteral("--kind"), QStringLiteral("listings"));
    const int kind = ReportKindFromName(kindName);
    if (kind == 0) {
        std::fprintf(stderr, "pagewright: unknown report kind '%s'\n", qPrintable(kindName));
        return 2;
    }
    // A report file to open at once: --open FILE, or the one remaining argument.
    QString openFile = TakeOption(args, QStringLiteral("--open"));
    const QString sqlLog = TakeOption(args, QStringLiteral("--sql-log"));
    TakeOption(args, QStringLiteral("--database")); // main() has put it in the environment
    if (openFile.isEmpty() && args.size() == 1 && !args[0].startsWith(QLatin1Char('-')))
        openFile = args.takeFirst();
    if (!args.isEmpty()) {
        std::fprintf(stderr, "pagewright: unexpected argument '%s'\n", qPrintable(args[0]));
        return 2;
    }

    GuiPrompter prompter;
    SetPrompter(&prompter);
    std::unique_ptr<EmbeddedHost> host;
    try {
        if (!DemoDataExists(dir)) {
            std::fprintf(stderr, "pagewright: preparing the demo data in %s (first run)...\n", qPrintable(dir));
            GenerateDemoData(dir);
            WriteDemoFlyers(dir);
        }
        host = EmbeddedHost::Open(dir);
        if (!sqlLog.isEmpty() && !host->SetSqlLog(sqlLog))
            throw HostError(HostErr::FileAccess, QStringLiteral("Cannot append to ") + sqlLog);
    } catch (const HostError& e) {
        std::fprintf(stderr, "pagewright: %s (error %d)\n", qPrintable(e.Description()), e.Number());
        SetPrompter(nullptr);
        return 1;
    }
    host->MainForm().SetSwitch(kind);
    RegisterDesignWindow();
    InstallDialogPrompts();
    InstallReportFileDialog();
    InstallReportRunner();
    InstallPrintForm();
    RegisterFlyerWindow();
    InstallHelpKey();

    clsReportDesign designer;
    int job = 1;
    QObject::connect(host.get(), &EmbeddedHost::jobClosed, &app, [&designer] {
        designer.UnloadObj();
        QCoreApplication::quit();
    });
    int rc = 0;
    try {
        designer.Start(host.get(), job);
        if (!openFile.isEmpty())
            if (auto* w = dynamic_cast<frmPagewright*>(designer.DesignForm()))
                w->SetReport(QFileInfo(openFile).absoluteFilePath(), QFileInfo(openFile).fileName(), QString());
        rc = app.exec();
    } catch (const HostError& e) {
        std::fprintf(stderr, "pagewright: %s (error %d)\n", qPrintable(e.Description()), e.Number());
        rc = 1;
    }
    designer.UnloadObj();
    SetPropertyPrompt(nullptr);
    SetReportFileDialog(nullptr);
    SetReportRunner(nullptr);
    SetPrintFormFactory({});
    SetFlyerWindowFactory({});
    SetPrompter(nullptr);
    return rc;
}
