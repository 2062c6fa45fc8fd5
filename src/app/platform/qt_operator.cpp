#include "platform/qt_operator.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QUrl>

#include "about_dialog.h"
#include "ethernet_setup_dialog.h"
#include "face_time_dialog.h"
#include "program_setup_dialog.h"
#include "setup_dialog_view.h"
#include "transmitter_dialogs.h"

namespace halvane::app {

void QtOperator::tell(const std::string& text, const std::string& title) {
    QMessageBox::information(m_parent, QString::fromStdString(title), QString::fromStdString(text));
}

Answer QtOperator::ask(const std::string& text, const std::string& title, Buttons buttons) {
    QMessageBox::StandardButtons set = QMessageBox::Ok;
    if (buttons == Buttons::YesNo) set = QMessageBox::Yes | QMessageBox::No;
    if (buttons == Buttons::YesNoCancel) set = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    const auto chosen =
        QMessageBox::question(m_parent, QString::fromStdString(title), QString::fromStdString(text), set);
    switch (chosen) {
        case QMessageBox::Yes:
            return Answer::Yes;
        case QMessageBox::No:
            return Answer::No;
        case QMessageBox::Ok:
            return Answer::Ok;
        default:
            return buttons == Buttons::YesNo ? Answer::No : Answer::Cancel;
    }
}

std::optional<ChosenFile> QtOperator::chooseFile(const FileDialogSetup& setup, bool save) {
    // "Description|pattern|Description|pattern": the descriptions carry their patterns in brackets.
    const QStringList parts = QString::fromStdString(setup.filter).split('|');
    QStringList filters;
    for (int i = 0; i + 1 < parts.size(); i += 2) filters << parts[i];
    QFileDialog dialog(m_parent);
    dialog.setNameFilters(filters);
    if (setup.filterIndex >= 1 && setup.filterIndex <= filters.size())
        dialog.selectNameFilter(filters[setup.filterIndex - 1]);
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    const QString file = dialog.selectedFiles().first();
    return ChosenFile{file.toStdString(), QFileInfo(file).fileName().toStdString()};
}

std::optional<ChosenFile> QtOperator::chooseOpenFile(const FileDialogSetup& setup) {
    return chooseFile(setup, false);
}

std::optional<ChosenFile> QtOperator::chooseSaveFile(const FileDialogSetup& setup) {
    return chooseFile(setup, true);
}

void QtOperator::openDocument(const std::string& path) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path)));
}

namespace {
// Each model is shown by its own view, modal over the main window.
template <class View, class... Args>
void execModal(Args&&... args) {
    View view(std::forward<Args>(args)...);
    view.exec();
}
}  // namespace

void QtOperator::showModal(Settings& dialog) {
    execModal<ProgramSetupDialog>(dialog, m_parent);
}
void QtOperator::showModal(AboutBox& dialog) {
    execModal<AboutDialog>(dialog, m_parent);
}
void QtOperator::showModal(Face_time& dialog) {
    execModal<FaceTimeDialog>(dialog, m_parent);
}
void QtOperator::showModal(frmDisplay& dialog) {
    execModal<SetupDialog>(dialog, m_parent);
}
void QtOperator::showModal(frmEthernetSetup& dialog) {
    execModal<EthernetSetupDialog>(dialog, m_parent);
}
void QtOperator::showModal(ProgramNumberDialog& dialog) {
    execModal<ProgramNumberView>(dialog, m_parent);
}
void QtOperator::showModal(ProgressWindow& window) {
    execModal<ProgressView>(window, *this, m_parent);
}
void QtOperator::showModal(FailedBox&) {
    execModal<FailedView>(m_parent);
}

void QtOperator::critical(const std::string& text, const std::string& title) {
    QMessageBox::critical(m_parent, QString::fromStdString(title), QString::fromStdString(text));
}

std::string QtOperator::showPopup(const std::string& menu) {
    return m_popup ? m_popup(menu) : std::string();
}

void QtOperator::setBusy(bool busy) {
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

}  // namespace halvane::app
