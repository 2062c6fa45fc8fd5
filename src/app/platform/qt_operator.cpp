#include "platform/qt_operator.h"

#include <QApplication>
#include <QCursor>
#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QUrl>

#include <stdexcept>
#include <utility>

#include "console_windows.h"

namespace halvane::app {

QtOperator::QtOperator() {
    addConsoleWindows(m_registry, *this);
}

// Views still up go before the operator they would call into; their models are told they are gone.
QtOperator::~QtOperator() {
    for (auto& [model, view] : std::exchange(m_modeless, {})) delete view.data();
}

void QtOperator::tell(const std::string& text, const std::string& title) {
    QMessageBox::information(m_parent, QString::fromStdString(title), QString::fromStdString(text));
}

Answer QtOperator::ask(const std::string& text, const std::string& title, Buttons buttons) {
    QMessageBox::StandardButtons set = QMessageBox::Ok;
    if (buttons == Buttons::OkCancel) set = QMessageBox::Ok | QMessageBox::Cancel;
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

std::optional<std::string> QtOperator::inputBox(const std::string& prompt, const std::string& title,
                                                const std::string& defaultText) {
    // Over the window in front, which is where the operator clicked to ask for it.
    QWidget* over = QApplication::activeWindow() ? QApplication::activeWindow() : m_parent.data();
    QInputDialog box(over);
    box.setObjectName("InputBox");
    box.setWindowTitle(QString::fromStdString(title));
    box.setLabelText(QString::fromStdString(prompt));
    box.setTextValue(QString::fromStdString(defaultText));
    if (box.exec() != QDialog::Accepted) return std::nullopt;
    return box.textValue().toStdString();
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
    return ChosenFile{file.toStdString(), QFileInfo(file).fileName().toStdString(),
                      static_cast<int>(filters.indexOf(dialog.selectedNameFilter())) + 1};
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

void QtOperator::show(Window& window, Modality modality) {
    if (modality == Modality::Modeless) return showModeless(window);
    const std::unique_ptr<QWidget> view = m_registry.make(window, m_parent);
    auto* dialog = qobject_cast<QDialog*>(view.get());
    if (!dialog)
        throw std::logic_error("the view of a modal window is not a dialog: " +
                               view->objectName().toStdString());
    dialog->exec();
}

void QtOperator::showModeless(Window& window) {
    if (QWidget* open = viewOf(window)) {
        open->show();
        open->raise();
        open->activateWindow();
        return;
    }
    QWidget* view = m_registry.make(window, m_parent).release();
    view->setAttribute(Qt::WA_DeleteOnClose);
    if (!view->isWindow()) view->setWindowFlag(Qt::Window);
    m_modeless[&window] = view;
    // Whichever goes first, the other forgets it: the model going closes the view at once, before
    // anything could repaint it; the view closed first leaves the model alone.
    window.setViewCloser([this, model = &window, guard = QPointer<QWidget>(view)] {
        m_modeless.erase(model);
        delete guard.data();
    });
    QObject::connect(view, &QObject::destroyed, [this, model = &window, alive = window.lifetime()] {
        if (alive.expired()) return;
        m_modeless.erase(model);
        model->setViewCloser({});
    });
    view->show();
}

QWidget* QtOperator::viewOf(const Window& window) const {
    const auto found = m_modeless.find(&window);
    return found == m_modeless.end() ? nullptr : found->second.data();
}

void QtOperator::critical(const std::string& text, const std::string& title) {
    QMessageBox::critical(m_parent, QString::fromStdString(title), QString::fromStdString(text));
}

std::string QtOperator::showPopup(const std::string& menu, const std::vector<PopupItem>& items) {
    if (m_beforePopup) m_beforePopup();
    QMenu popup(QApplication::activeWindow());
    popup.setObjectName(QString::fromStdString(menu));
    for (const PopupItem& item : items) {
        if (!item.visible) continue;
        QAction* action = popup.addAction(QString::fromStdString(item.caption));
        action->setObjectName(QString::fromStdString(item.name));
        action->setEnabled(item.enabled);
    }
    if (popup.isEmpty()) return {};
    const QAction* chosen = popup.exec(QCursor::pos());
    return chosen ? chosen->objectName().toStdString() : std::string();
}

void QtOperator::setBusy(bool busy) {
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

}  // namespace halvane::app
