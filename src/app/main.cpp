// halvane: the console's windows.

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QIcon>
#include <QMessageBox>

#include "authoring/about_box.h"
#include "authoring/main_window.h"
#include "authoring/startup.h"
#include "main_window_view.h"
#include "platform/console_links.h"
#include "platform/qt_operator.h"
#include "platform/settings_position_store.h"

using namespace halvane;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
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
    parser.process(app);

    std::optional<std::filesystem::path> configOverride;
    if (parser.isSet(configOption)) configOverride = parser.value(configOption).toStdString();
    const auto exeDir = executableDir();

    SharedState state;
    const auto configFile = locateConfig(exeDir, userConfigDir(), configOverride);
    const StartupReport report = readStartup(configFile, state);

    app::QtOperator op;
    app::SettingsPositionStore positions;
    ManualLocations manuals{{(exeDir / "hvn.doc").string(),
                             (exeDir / "../share/doc/halvane/manual.html").string(),
                             (exeDir / "../docs/manual.html").string()}};
    Form1 form(state, op, positions, manuals);
    app::ConsoleLinks links(state, op);
    form.attachLinks(&links.comPort(), &links.wifi());
    app::MainWindowView window(form);
    op.setParentWindow(&window);
    op.setPopupHandler([&window](const std::string& menu) { return window.popup(menu); });
    window.show();

    if (!report.badKeys.empty()) {
        std::string text = "Some settings in " + configFile.string() + " could not be used as they stand:\n";
        for (const auto& line : report.badKeys) text += "\n" + line;
        op.tell(text, kAppTitle);
    }
    return app.exec();
}
