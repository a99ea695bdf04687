#pragma once

#include "host/live/LivePlayer.h"
#include "host/live/LiveWindow.h"

namespace host {

// Brings together what the user wants to see (the window's model), what there is (the player), and the picture. Both
// must outlive it.
class CLiveStage {
public:
    CLiveStage(CLivePlayer& player, CLiveWindow& window)
        : m_player(player)
        , m_window(window)
        , m_model(window.Model()) {}

    // Paints when there is something new, or when told to. False when the wanted frame has not been reached yet.
    bool Update(double framesPerSecond, bool paint);

private:
    bool Reach();
    void UpdateRegion();
    bool UpdateFrame();

    CLivePlayer& m_player;
    CLiveWindow& m_window;
    CLiveModel& m_model;
    LiveFrame m_frame;
    bool m_shown = false;
    bool m_sought = false; // the status tells of frames that are read
    bool m_untold = false; // the region's page does not know yet
};

} // namespace host
