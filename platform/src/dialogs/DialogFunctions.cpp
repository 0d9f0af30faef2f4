#include "platform/host/CallTrace.h"
#include "platform/src/dialogs/DialogControlState.h"

using platform::CallDirection;
using platform::CallTrace;
using platform::dialogs;
using platform::TraceArguments;

short DGModalDialog(RSResModule dialogModule, short dialogID, RSResModule imageModule, DGCallback callback,
                    DGUserData userData) {
    CallTrace trace(CallDirection::ToHost, "DGModalDialog", [&] {
        return TraceArguments{{"dialog", dialogID}};
    });
    return trace.returning(dialogs().runModal(dialogModule, dialogID, imageModule, callback, userData));
}

short DGModelessInit(RSResModule dialogModule, short dialogResID, RSResModule imageModule,
                     DGCallback callback, DGUserData userData) {
    CallTrace trace(CallDirection::ToHost, "DGModelessInit", [&] {
        return TraceArguments{{"resource", dialogResID}};
    });
    const auto dialog = dialogs().open(dialogModule, dialogResID, imageModule, callback, userData, false);
    return trace.returning(dialog != nullptr ? dialog->state.id : short{0});
}

bool DGShowModelessDialog(short dialogID, int) {
    CallTrace trace(CallDirection::ToHost, "DGShowModelessDialog", [&] {
        return TraceArguments{{"dialog", dialogID}};
    });
    const auto dialog = dialogs().find(dialogID);
    return trace.returning(dialog != nullptr && !dialog->state.modal && dialogs().show(dialog));
}

void DGModelessClose(short dialogID) {
    CallTrace trace(CallDirection::ToHost, "DGModelessClose", [&] {
        return TraceArguments{{"dialog", dialogID}};
    });
    const auto dialog = dialogs().find(dialogID);
    if (dialog != nullptr && !dialog->state.modal) dialogs().close(dialog, 0);
}

short DGAlert(short type, const GS::UniString& text1, const GS::UniString& text2, const GS::UniString& text3,
              const GS::UniString& button1, const GS::UniString& button2, const GS::UniString& button3) {
    CallTrace trace(CallDirection::ToHost, "DGAlert", [&] {
        return TraceArguments{{"type", type},
                              {"text1", UniStringToUtf8(text1)},
                              {"text2", UniStringToUtf8(text2)},
                              {"text3", UniStringToUtf8(text3)},
                              {"button1", UniStringToUtf8(button1)},
                              {"button2", UniStringToUtf8(button2)},
                              {"button3", UniStringToUtf8(button3)}};
    });
    return trace.returning(
        dialogs().runAlert(platform::AlertState{type, {text1, text2, text3}, {button1, button2, button3}}));
}
