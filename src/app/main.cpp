// pagewright: the host shell. Without a subcommand it starts the designer on the data folder;
// with one it runs that batch command without a window.
#include "Subcommands.h"

#include <QApplication>
#include <QCoreApplication>
#include <cstdio>

namespace {

void printUsage()
{
    std::fprintf(stdout, "usage: pagewright [--data DIR] [--kind listings|flyers|taxrolls|office|members|rental]\n");
    std::fprintf(stdout, "       pagewright SUBCOMMAND [options]\n\nsubcommands:\n");
    for (const auto& [name, cmd] : Subcommands())
        std::fprintf(stdout, "  %-44s %s\n", qPrintable(cmd.usage), qPrintable(cmd.summary));
}

} // namespace

int RunDesigner(int argc, char** argv); // cmd_gui.cpp

int main(int argc, char** argv)
{
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);

    if (!args.isEmpty() && (args[0] == QLatin1String("--help") || args[0] == QLatin1String("-h") || args[0] == QLatin1String("help"))) {
        printUsage();
        return 0;
    }
    if (!args.isEmpty() && !args[0].startsWith(QLatin1Char('-'))) {
        const auto it = Subcommands().find(args[0]);
        if (it == Subcommands().end()) {
            std::fprintf(stderr, "pagewright: unknown subcommand '%s'\n", qPrintable(args[0]));
            printUsage();
            return 2;
        }
        // Batch commands never need a display; they may still paint (fonts, images).
        if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        QApplication app(argc, argv);
        QCoreApplication::setApplicationName(QStringLiteral("Pagewright"));
        try {
            return it->second.run(args.mid(1));
        } catch (const std::exception& e) {
            std::fprintf(stderr, "pagewright %s: %s\n", qPrintable(args[0]), e.what());
            return 1;
        }
    }
    return RunDesigner(argc, argv);
}
