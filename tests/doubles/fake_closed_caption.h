// FakeClosedCaption: recording double of IClosedCaption. Stores the caption
// settings it is given, and which SetOverlayCc overload was called last
// (both render alike in the call log). Any thread.
#pragma once

#include <string>

#include "platform/i_closed_caption.h"
#include "tests/doubles/fake_base.h"

namespace stbav_test {

struct FakeClosedCaptionState {
    enum Overload { NONE, NTSC, DTV };
    bool initialized = false;
    bool vbiLine21On = false;
    OverlayCcType_e overlayType = static_cast<OverlayCcType_e>(0);
    OverlayNtscCcType_e ntscDataType = static_cast<OverlayNtscCcType_e>(0);
    OverlayDtvCcType_e dtvDataType = static_cast<OverlayDtvCcType_e>(0);
    Overload lastOverload = NONE;
    bool overlayOn = false;
};

class FakeClosedCaption : public IClosedCaption, public FakeBase<FakeClosedCaptionState> {
public:
    using State = FakeClosedCaptionState;

    explicit FakeClosedCaption(CallLog& log, std::string name = "IClosedCaption") : FakeBase(log, std::move(name)) {}

    int Initialize() override { return SetFlag("Initialize", &State::initialized, true) ? 0 : -1; }
    int Deinitialize() override { return SetFlag("Deinitialize", &State::initialized, false) ? 0 : -1; }
    bool SetVbiLine21CcState(bool on) override { return Store("SetVbiLine21CcState", &State::vbiLine21On, on); }
    bool SetOverlayCc(OverlayCcType_e type, OverlayNtscCcType_e dataType) override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (RecordLocked("SetOverlayCc", type, dataType)) return false;
        m_State.overlayType = type;
        m_State.ntscDataType = dataType;
        m_State.lastOverload = State::NTSC;
        return true;
    }
    bool SetOverlayCc(OverlayCcType_e type, OverlayDtvCcType_e dataType) override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        if (RecordLocked("SetOverlayCc", type, dataType)) return false;
        m_State.overlayType = type;
        m_State.dtvDataType = dataType;
        m_State.lastOverload = State::DTV;
        return true;
    }
    bool SetOverlayCcState(bool on) override { return Store("SetOverlayCcState", &State::overlayOn, on); }
};

}  // namespace stbav_test
