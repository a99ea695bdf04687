#include "host/live/LivePlayer.h"

#include "host/HostError.h"

namespace host {

namespace {

const Command& Repeatable(const Command& command) {
    if (command.input == "-") {
        throw HostError(ExitCode::Usage, "--live needs a file: a pipe cannot be played again.");
    }
    return command;
}

Options FromSaved(Options options) {
    options.saved = true;
    return options;
}

StreamShape ShapeOf(const CInput& input) {
    return {input.Feed(), input.Info().width, input.Info().height, input.Rate()};
}

} // namespace

CLivePlayer::CLivePlayer(const Command& command)
    : m_command(Repeatable(command))
    , m_input(m_command)
    , m_shape(ShapeOf(*m_input))
    , m_aspect(m_input->Info().aspect.value_or(Rational{1, 1}))
    , m_client(FromSaved(command.options), m_shape)
    , m_converter(LayoutOf(m_shape.pixels), Layout::Rgb24, m_shape.width, m_shape.height, m_input->Info().fullRange)
    , m_before(FrameSize(Pixels::Rgb24, m_shape.width, m_shape.height))
    , m_after(m_before.size()) {
    m_command.options.quiet = true; // what opening says of the input it has said now
}

void CLivePlayer::Read() {
    if (m_input->Read(m_client.Input())) {
        return;
    }
    m_input->Close();
    m_input.emplace(m_command);
    m_next = 0;
    (void)m_input->Read(m_client.Input()); // an input without frames is none
}

void CLivePlayer::Next() {
    Read();
    m_number = m_next++;
    const std::uint8_t* const result = m_client.Process();
    m_changed = PicturesDiffer(m_shape.pixels, m_shape.width, m_shape.height, m_client.Input(), result);
    Show(m_client.Input(), m_before);
    Show(result, m_after);
}

void CLivePlayer::Show(const std::uint8_t* frame, std::vector<std::uint8_t>& picture) {
    m_converter.Convert(PackedFrame(m_shape.pixels, m_shape.width, m_shape.height, frame),
                        PackedFrame(Pixels::Rgb24, m_shape.width, m_shape.height, picture.data()), false);
}

} // namespace host
