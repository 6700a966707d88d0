// Shared helpers of the virtual board tests: the board fixture of the adapter
// tests (a board at power-on around every test) with the rest of the daemon's
// bring-up on top, playing a service, reading the status record, polling waits.
#pragma once

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "platform/stb_module.h"
#include "sim/stbsim.h"
#include "tests/e2e/e2e_support.h"
#include "tests/platform/board_fixture.h"

namespace simtest {

using e2e::WaitUntil;  // polls a predicate until it holds, 10 s by default

// The address of a temporary record, alive until the end of the call it is passed to.
template <class T>
T* Temp(T&& record) {
    return &record;
}

// Waits until the monotonic clock has moved on by ms.
inline void WaitClock(int ms) {
    const int64_t until = stbsim::MonotonicUs() + int64_t{ms} * 1000;
    WaitUntil([&] { return stbsim::MonotonicUs() >= until; });
}

struct Handles : stbav_test::BoardHandles {
    uint32_t track = 0;
};

class SimTest : public stbav_test::BoardTest {
protected:
    // The chip bring-up as the daemon makes it (the journal holds only the
    // steps after the window is attached); every step must succeed.
    Handles BringUp() {
        Handles h;
        static_cast<stbav_test::BoardHandles&>(h) = BringUpByHand();
        VoutDisplayAttr attr;
        EXPECT_EQ(vout_display_get(h.vout, &attr, nullptr), 0);
        attr.format = 11;
        attr.rate = 64;
        CcAttr cc;
        // A braced list runs its calls in order.
        for (int code : {vout_display_set(h.vout, &attr, nullptr), vout_window_open(h.window),
                         aout_track_create(h.aout, &h.track, 0), aout_track_attach_input(h.track, 0, h.av),
                         cc_init(Temp(CcInitParam{2})), cc_creat(Temp(CcCreateParam{1})),
                         cc_set_window(0, 0, 1280, 720), cc_start(), cc_getAttr(&cc)})
            EXPECT_EQ(code, 0);
        cc.source = 1;
        cc.digital_mode = 3;
        cc.data_type = 1;
        EXPECT_EQ(cc_setAttr(&cc), 0);
        return h;
    }

    static AvStatusInfo Status(uint32_t av) {
        AvStatusInfo st;
        memset(&st, 0xAB, sizeof st);
        EXPECT_EQ(av_get_status_info(av, &st), 0);
        return st;
    }
};

}  // namespace simtest
