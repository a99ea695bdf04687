#include "host/formats/ScanLabels.h"

namespace host {

Scan CScanLabels::Next(Scan scan, bool deinterlaced) {
    const bool whole = m_which == Deinterlaced::All || (m_which == Deinterlaced::Some && deinterlaced);
    ++m_frames;
    m_deinterlaced += whole ? 1 : 0;
    return whole ? Scan::Progressive : scan;
}

Scan CScanLabels::AtLast() const {
    if (m_frames == 0 || m_deinterlaced == 0) {
        return AtFirst();
    }
    if (m_deinterlaced == m_frames) {
        return Scan::Progressive;
    }
    return MayBeInterlaced(m_input) ? Scan::Mixed : m_input;
}

} // namespace host
