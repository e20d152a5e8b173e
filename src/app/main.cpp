// pagewright: the host shell. Without a subcommand it starts the designer on the data folder;
// with one it runs that batch command without a window.
// Exit codes: 0 done, 1 the work failed (the message is on standard error), 2 the command line
// was wrong.
#include "Subcommands.h"

#include <QApplication>
#include <QCoreApplication>
#include <cstdio>

#include <libpq-fe.h>
#include <sqlite3.h>

namespace {

const char* const kCommonOptions =
    "common options:\n"
    "  --data DIR          the data folder (default $PAGEWRIGHT_DATA or ~/.local/share/pagewright)\n"
    "  --database URL      the listing database: postgresql://USER@HOST:PORT/DB or\n"
    "                      postgresql:///DB?host=/socket/folder (default $PAGEWRIGHT_DATABASE,\n"
    "                      else Database= in host.ini, else the data folder's SQLite file)\n"
    "  --sql-log FILE      append every statement sent to the database to FILE\n"
    "  --help              show the help of the command\n";

void printUsage(FILE* out)
{
    std::fprintf(out, "usage: pagewright [--data DIR] [--database URL] [--kind listings|flyers|taxrolls|office|members|rental] [--open FILE.rdf]\n");
    std::fprintf(out, "       pagewright SUBCOMMAND [options]      (pagewright SUBCOMMAND --help for its options)\n");
    std::fprintf(out, "       pagewright --version\n\nsubcommands:\n");
    for (const auto& [name, cmd] : Subcommands())
        std::fprintf(out, "  %-10s %s\n", qPrintable(name), qPrintable(cmd.summary));
    std::fprintf(out, "\n%s\nexit codes: 0 done, 1 the work failed (message on standard error), 2 wrong command line\n", kCommonOptions);
}

void printSubcommandHelp(const Subcommand& cmd)
{
    std::fprintf(stdout, "usage: pagewright %s\n\n%s.\n\n%s", qPrintable(cmd.usage), qPrintable(cmd.summary), kCommonOptions);
}

void printVersion()
{
    std::fprintf(stdout, "pagewright %s (Qt %s, SQLite %s, libpq %d)\n", PW_VERSION, qVersion(), sqlite3_libversion(), PQlibVersion());
}

// "--database URL" anywhere on the line names the database for this run; every host opened
// in this process (and the programs it starts) reads it from the environment.
bool takeDatabase(QStringList& args)
{
    for (int i = 0; i < args.size(); ++i) {
        QString url;
        if (args[i] == QLatin1String("--database")) {
            if (i + 1 >= args.size()) {
                std::fprintf(stderr, "pagewright: --database needs a URL such as postgresql://USER@HOST:5432/DB\n");
                return false;
            }
            url = args[i + 1];
            args.remove(i, 2);
        } else if (args[i].startsWith(QLatin1String("--database="))) {
            url = args[i].mid(11);
            args.remove(i);
        } else {
            continue;
        }
        qputenv("PAGEWRIGHT_DATABASE", url.toUtf8());
        return true;
    }
    return true;
}

} // namespace

int RunDesigner(int argc, char** argv); // cmd_gui.cpp

int main(int argc, char** argv)
{
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);

    if (!args.isEmpty() && (args[0] == QLatin1String("--help") || args[0] == QLatin1String("-h") || args[0] == QLatin1String("help"))) {
        if (args.size() > 1 && Subcommands().count(args[1])) {
            printSubcommandHelp(Subcommands().at(args[1]));
            return 0;
        }
        printUsage(stdout);
        return 0;
    }
    if (!args.isEmpty() && (args[0] == QLatin1String("--version") || args[0] == QLatin1String("-V"))) {
        printVersion();
        return 0;
    }
    if (!takeDatabase(args))
        return 2;
    if (!args.isEmpty() && !args[0].startsWith(QLatin1Char('-'))) {
        const auto it = Subcommands().find(args[0]);
        if (it == Subcommands().end()) {
            std::fprintf(stderr, "pagewright: unknown subcommand '%s'\n\n", qPrintable(args[0]));
            printUsage(stderr);
            return 2;
        }
        if (args.contains(QLatin1String("--help")) || args.contains(QLatin1String("-h"))) {
            printSubcommandHelp(it->second);
            return 0;
        }
        // Batch commands never need a display; they may still paint (fonts, images).
        if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        QApplication app(argc, argv);
        QCoreApplication::setApplicationName(QStringLiteral("Pagewright"));
        QCoreApplication::setApplicationVersion(QStringLiteral(PW_VERSION));
        try {
            return it->second.run(args.mid(1));
        } catch (const std::exception& e) {
            std::fprintf(stderr, "pagewright %s: %s\n", qPrintable(args[0]), e.what());
            return 1;
        }
    }
    if (args.contains(QLatin1String("--help")) || args.contains(QLatin1String("-h"))) {
        printUsage(stdout);
        return 0;
    }
    return RunDesigner(argc, argv);
}
