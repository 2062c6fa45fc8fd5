#include "console_windows.h"

#include "about_dialog.h"
#include "authoring/about_box.h"
#include "authoring/face_time.h"
#include "authoring/program_setup.h"
#include "console/setup_dialog.h"
#include "ethernet_setup_dialog.h"
#include "face_time_dialog.h"
#include "hit_scores_view.h"
#include "links/ethernet_setup.h"
#include "links/radio_setup.h"
#include "links/sending_radio.h"
#include "links/transmitter_windows.h"
#include "links/port_search.h"
#include "live_mode_view.h"
#include "platform/window_registry.h"
#include "port_search_view.h"
#include "program_setup_dialog.h"
#include "radio_setup_view.h"
#include "range/live_mode.h"
#include "range/range_display.h"
#include "range/range_running.h"
#include "range_display_view.h"
#include "range_running_view.h"
#include "score_print_view.h"
#include "scores/hit_scores.h"
#include "scores/score_print.h"
#include "scores/target_setup.h"
#include "scores/target_transfer.h"
#include "setup_dialog_view.h"
#include "target_setup_view.h"
#include "target_transfer_view.h"
#include "transmitter_dialogs.h"

namespace halvane::app {

void addConsoleWindows(WindowRegistry& registry, Operator& op) {
    registry.add<Settings, ProgramSetupDialog>();
    registry.add<AboutBox, AboutDialog>();
    registry.add<Face_time, FaceTimeDialog>();
    registry.add<frmDisplay, SetupDialog>();
    registry.add<frmEthernetSetup, EthernetSetupDialog>();
    registry.add<ProgramNumberDialog, ProgramNumberView>();
    // The progress window runs its dialogue, which may ask the operator.
    registry.add<ProgressWindow>([&op](ProgressWindow& model, QWidget* parent) {
        return std::make_unique<ProgressView>(model, op, parent);
    });
    registry.add<frmRangeRunning, RangeRunningView>();
    registry.add<frmLiveMode, LiveModeView>();
    registry.add<RangeDisplay, RangeDisplayView>();
    registry.add<FrmHitScores, HitScoresView>();
    registry.add<frmHitScore_Option, HitScoreOptionView>();
    registry.add<frmLM_Setup, TargetSetupView>();
    registry.add<frmPrint, ScorePrintView>();
    registry.add<frmSerialTarget, SerialTargetView>();
    registry.add<frmRetrieving>([](frmRetrieving& model, QWidget* parent) {
        return std::make_unique<TargetTransferView>(model, frmRetrieving::Caption, frmRetrieving::Label1,
                                                    frmRetrieving::Label2, parent);
    });
    registry.add<frmLM_Send>([](frmLM_Send& model, QWidget* parent) {
        return std::make_unique<TargetTransferView>(model, frmLM_Send::Caption, frmLM_Send::Label1,
                                                    frmLM_Send::Label2, parent);
    });
    registry.add<frmCommPorts, PortSearchView>();
    registry.add<frmRadioSetup, RadioSetupView>();
    registry.add<frmSendingRadio>([](frmSendingRadio& model, QWidget* parent) {
        return std::make_unique<TargetTransferView>(model, frmSendingRadio::Caption, model.lblSend_Receive,
                                                    "", parent);
    });
    registry.add<FailedBox>([](FailedBox&, QWidget* parent) { return std::make_unique<FailedView>(parent); });
}

}  // namespace halvane::app
