// Which part of the picture is seen, and where in the window.
#pragma once

#include "host/player/LiveLayout.h"

namespace host {

// `source` is in the picture's samples from its top left corner, `shown` in pixels of the window.
struct View {
    Box shown;
    Box source;

    // The sample under a point; outside of the picture when the point is. Only for views that show something.
    int PictureX(int x) const;
    int PictureY(int y) const;
    // Where a sample's left or top edge is.
    int WindowX(int x) const { return shown.x + (x - source.x) * shown.width / source.width; }
    int WindowY(int y) const { return shown.y + (y - source.y) * shown.height / source.height; }
    bool IsEmpty() const { return shown.width <= 0 || shown.height <= 0; }
};

// The whole picture in its shape, or its samples enlarged; both pictures have the same part.
class CViewport {
public:
    explicit CViewport(const PictureShape& shape)
        : m_shape(shape)
        , m_x(shape.width / 2.0)
        , m_y(shape.height / 2.0) {}

    // Pixels of the window per sample, whatever the samples' aspect ratio; 0: the whole picture as the room allows.
    int Zoom() const { return m_zoom; }
    void SetZoom(int zoom) { m_zoom = zoom; }
    // Moves the part that is seen in this room, as far as there is any, by pixels of the window.
    void Pan(int dx, int dy, const Box& room);

    View In(const Box& room) const;

private:
    PictureShape m_shape;
    int m_zoom = 0;
    double m_x; // the sample in the middle
    double m_y;
};

} // namespace host
