// Form1's Transmitter menu: Send stores the Program in a place of the transmitter, Download fetches one.

#include "authoring/about_box.h"
#include "console/main_window.h"
#include "links/com_port.h"
#include "links/program_image.h"
#include "links/transmitter_download.h"
#include "links/transmitter_send.h"
#include "links/transmitter_windows.h"

namespace halvane {

void Form1::M_Send() {
    if (!m_comPort) return;
    if (!m_state.GridLoaded || !m_grid) {
        tell("There is no Program to send.");
        return;
    }
    if (!m_comPort->PortOpen()) m_comPort->OpenComPort();
    ProgramNumber = 0;
    ProgramNumberDialog numberDialog("Send");
    m_operator.show(numberDialog);
    ProgramNumber = static_cast<std::int16_t>(numberDialog.ProgramNumber);
    if (ProgramNumber == 0) return;
    Tag = "True";

    // The image is checked whole before a single byte goes out.
    const auto image = WriteProgramImage(m_state, *m_grid);
    if (const auto problem = findByteProblem(image)) {
        tell(problem->message);
        Tag = "False";
        return;
    }
    if (const auto error = writeTempImage(image)) {
        tell(*error);
        Tag = "False";
        return;
    }
    if (!m_comPort->PortOpen()) m_comPort->OpenComPort();
    SendProgram send(imageBytes(image), ProgramNumber);
    ProgressWindow window("Sending", "Sending to LMC", send, m_comPort->port());
    m_operator.show(window);
    if (send.outcome() == SendProgram::Outcome::NoContact ||
        send.outcome() == SendProgram::Outcome::LineLost) {
        FailedBox failed;
        m_operator.show(failed);
    }
    Tag = send.tag() ? "True" : "False";
    if (send.outcome() == SendProgram::Outcome::Stored)
        m_operator.tell("Program " + std::to_string(ProgramNumber) + " sent successful", "Successful");
}

void Form1::M_Download() {
    if (!m_comPort) return;
    // A download replaces the Program on the screen: unsaved work is not lost without the question.
    if (m_state.FileChanged) {
        const Answer answer = askSaveChanges();
        if (answer == Answer::Cancel) return;
        if (answer == Answer::Yes && saveFromPrompt() != SaveOutcome::Saved) return;
    }
    ProgramNumber = 0;
    ProgramNumberDialog numberDialog("Download");
    m_operator.show(numberDialog);
    ProgramNumber = static_cast<std::int16_t>(numberDialog.ProgramNumber);
    if (!numberDialog.Problem.empty()) {
        tell(numberDialog.Problem);
        return;
    }
    if (ProgramNumber == 0) return;

    // From here the former Program is gone, whatever the line does, and the grid is no longer the file
    // that was open: Save asks for a name, and no highlight names a row of the former Program.
    if (m_state.GridLoaded) destroyGrid();
    ClearSelectionRows();
    m_state.FilePath.clear();
    m_caption = "LM47 Programer ";
    ProgramGrid& grid = createGrid();
    prepareDownloadGrid(m_state, grid);
    grid.Visible = true;
    setProgramMenusEnabled(true);
    if (!m_comPort->PortOpen()) m_comPort->OpenComPort();

    DownloadProgram download(m_state, grid, ProgramNumber);
    ProgressWindow window("Downloading", "Downloading from LMC", download, m_comPort->port());
    m_operator.show(window);
    gridReshaped();
    Tag = download.tag() ? "True" : "False";
    if (!download.tag()) {
        m_comPort->port().dropInput();
        m_comPort->port().dropOutput();
        FailedBox failed;
        m_operator.show(failed);
    }
}

}  // namespace halvane
