// halvane: the console's windows.

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QIcon>
#include <QMessageBox>
#include <QScreen>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string_view>

#include "authoring/about_box.h"
#include "authoring/startup.h"
#include "console/main_window.h"
#include "main_window_view.h"
#include "platform/console_links.h"
#include "platform/guarded_application.h"
#include "platform/qt_operator.h"
#include "platform/settings_position_store.h"
#include "score_printer.h"
#include "simulation/example_program.h"
#include "simulation/simulated_range.h"
#include "simulation/simulated_range_window.h"
#include "workbook/gsf_workbook_writer.h"

using namespace halvane;

int main(int argc, char** argv) {
    // The version needs no display: asked for on a machine without one, it still answers.
    for (int i = 1; i < argc; ++i)
        if (std::string_view(argv[i]) == "--version" || std::string_view(argv[i]) == "-v") {
            std::printf("halvane %s\n", HALVANE_VERSION);
            return 0;
        }
    app::GuardedApplication app(argc, argv);
    QApplication::setApplicationName("Halvane");
    QApplication::setApplicationVersion(HALVANE_VERSION);
    QApplication::setWindowIcon(QIcon(":/halvane.svg"));

    QCommandLineParser parser;
    parser.setApplicationDescription("Halvane, a console for ranges of radio-controlled targets.");
    parser.addHelpOption();
    parser.addVersionOption();
    QCommandLineOption configOption("config", "Read and write the settings in FILE instead of hvn.cfg.",
                                    "FILE");
    parser.addOption(configOption);
    QCommandLineOption simulateOption(
        "simulate",
        "Start on a simulated range (transmitter, radio modem, line controller, Wi-Fi bridge and "
        "8 targets) with settings of its own and an example Program open; the operator's hvn.cfg is "
        "not touched.");
    parser.addOption(simulateOption);
    parser.process(app);

    std::optional<std::filesystem::path> configOverride;
    if (parser.isSet(configOption)) configOverride = parser.value(configOption).toStdString();
    const auto exeDir = executableDir();

    std::unique_ptr<app::SimulatedRange> simulation;
    if (parser.isSet(simulateOption)) {
        simulation = std::make_unique<app::SimulatedRange>();
        std::string error;
        if (!simulation->start(error)) {
            QMessageBox::critical(nullptr, kAppTitle,
                                  QString::fromStdString("The simulated range could not start: " + error));
            return 1;
        }
        configOverride = simulation->configFile();
    }

    SharedState state;
    const auto configFile = locateConfig(exeDir, userConfigDir(), configOverride);
    const StartupReport report = readStartup(configFile, state);

    app::QtOperator op;
    app::SettingsPositionStore positions;
    // Beside the program, then where the package installs it, then the source tree of a build-tree run.
    ManualLocations manuals{{(exeDir / "hvn.doc").string(),
                             (exeDir / "../share/doc/halvane/manual.html").lexically_normal().string(),
                             HALVANE_SOURCE_MANUAL}};
    Form1 form(state, op, positions, manuals);
    app::ConsoleLinks links(state, op);
    form.attachLinks(&links.comPort(), &links.wifi(), &app::ConsoleLinks::newWindowPort);
    app::MainWindowView window(form);
    op.setParentWindow(&window);
    GsfWorkbookWriter workbooks;
    app::ScoreSheetPrinter printer(&window);
    form.attachScoreOutput(&workbooks, &printer);
    op.setBeforePopup([&window] { window.refresh(); });
    app.setReporter([&op](const std::string& text, bool) { op.critical(text, kAppTitle); });
    app.setAfterFault([&window] { window.refresh(); });
    // A newcomer starts on a Program that fits the simulated range rather than on an empty window.
    if (simulation) {
        form.LoadProgram({simulation->exampleProgram().string(), app::ExampleProgram::kFileTitle});
        window.refresh();
    }
    window.show();
    std::unique_ptr<app::SimulatedRangeWindow> rangeWindow;
    if (simulation) {
        rangeWindow = std::make_unique<app::SimulatedRangeWindow>(*simulation);
        // Beside the main window, as far as the screen allows.
        const QRect screen = window.screen()->availableGeometry();
        const int x = std::min(window.frameGeometry().right() + 12, screen.right() - rangeWindow->width());
        rangeWindow->move(std::max(screen.left(), x), window.frameGeometry().top());
        rangeWindow->show();
    }

    if (!report.badKeys.empty()) {
        std::string text = "Some settings in " + configFile.string() + " could not be used as they stand:\n";
        for (const auto& line : report.badKeys) text += "\n" + line;
        op.tell(text, kAppTitle);
    }
    return app.exec();
}
