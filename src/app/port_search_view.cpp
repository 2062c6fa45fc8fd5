#include "port_search_view.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "links/port_names.h"
#include "links/port_search.h"
#include "platform/guarded_application.h"

namespace halvane::app {

PortSearchView::PortSearchView(frmCommPorts& model, QWidget* parent) : QDialog(parent), m_model(model) {
    setObjectName("frmCommPorts");
    setWindowTitle(frmCommPorts::Caption);
    auto* layout = new QVBoxLayout(this);
    m_label2 = new QLabel(frmCommPorts::Label2);
    m_label3 = new QLabel(frmCommPorts::Label3);
    m_asking = new QLabel;
    m_asking->setObjectName("asking");
    m_label1 = new QLabel;
    m_label1->setObjectName("Label1");
    for (QLabel* label : {m_label2, m_label3, m_asking}) label->setAlignment(Qt::AlignCenter);
    layout->addWidget(m_label2);
    layout->addWidget(m_label3);
    layout->addWidget(m_asking);
    layout->addWidget(m_label1);

    m_frame1 = new QGroupBox(frmCommPorts::Frame1);
    auto* grid = new QGridLayout(m_frame1);
    for (int port = kFirstPort; port <= kLastPort; ++port) {
        auto* option = new QRadioButton(QString::fromStdString(frmCommPorts::OptionCaption(port)));
        option->setObjectName(QString("Option1_%1").arg(port));
        connect(option, &QRadioButton::clicked, this, [this, port] {
            GuardedApplication::handle([this, port] { m_model.Option1_Click(port); });
            refresh();
        });
        grid->addWidget(option, (port - 1) / 4, (port - 1) % 4);
        m_options[static_cast<std::size_t>(port)] = option;
    }
    layout->addWidget(m_frame1);

    const OkCancel buttons = okCancelRow();
    m_ok = buttons.ok;
    m_cancel = buttons.cancel;
    connect(m_ok, &QPushButton::clicked, this, [this] {
        GuardedApplication::handle([this] { m_model.OKButton_Click(); });
        if (m_model.closed()) accept();
    });
    connect(m_cancel, &QPushButton::clicked, this, [this] { reject(); });
    layout->addLayout(buttons.row);
    setMinimumWidth(360);

    m_shownSearching = !m_model.searching();  // so that the first refresh lays everything out
    refresh();
    if (auto* app = GuardedApplication::instance()) {
        app->deadlines().add(*this);
        m_registered = true;
    }
}

PortSearchView::~PortSearchView() {
    unregister();
}

void PortSearchView::unregister() {
    if (m_registered) GuardedApplication::instance()->deadlines().remove(*this);
    m_registered = false;
}

std::optional<TimePoint> PortSearchView::nextDeadline() const {
    if (m_model.searching() != m_shownSearching || m_model.progressText() != m_shownProgress)
        return TimePoint{};
    return m_model.nextDeadline();
}

void PortSearchView::onTime(TimePoint now) {
    if (const auto due = m_model.nextDeadline(); due && *due <= now) m_model.onTime(now);
    refresh();
}

void PortSearchView::reject() {
    if (m_model.searching()) return;
    GuardedApplication::handle([this] { m_model.CancelButton_Click(); });
    unregister();
    QDialog::reject();
}

void PortSearchView::refresh() {
    const bool searching = m_model.searching();
    m_shownProgress = m_model.progressText();
    m_asking->setText(QString::fromStdString(m_shownProgress));
    if (searching != m_shownSearching) {
        m_shownSearching = searching;
        m_label2->setVisible(searching);
        m_label3->setVisible(searching);
        m_asking->setVisible(searching);
        m_frame1->setVisible(!searching);
        m_label1->setVisible(!searching);
        m_ok->setEnabled(!searching);
        m_cancel->setEnabled(!searching);
        adjustSize();
    }
    m_label1->setText(QString::fromStdString(m_model.Label1()));
    for (int port = kFirstPort; port <= kLastPort; ++port) {
        QRadioButton* option = m_options[static_cast<std::size_t>(port)];
        option->setEnabled(m_model.OptionEnabled(port));
        // An option the model selects stays checked even when it is disabled (ComPort on an absent port).
        option->setAutoExclusive(false);
        option->setChecked(m_model.selected() == port);
        option->setAutoExclusive(true);
    }
}

}  // namespace halvane::app
