#include "host/files/Input.h"

#include "host/formats/FrameSource.h"
#include "host/HostError.h"
#include "host/formats/InputKind.h"
#include "host/console/Console.h"
#include "host/files/Files.h"
#include "host/files/MediaSource.h"
#include "host/console/Text.h"

#include <new>
#include <utility>

namespace host {

CInput::CInput(const Command& command)
    : m_lines(command.options.lines)
    , m_keepCutOff(command.options.keepCutOff) {
    Open(command);
    if (!command.options.noSide) {
        m_source->SetSidePackets([this](std::size_t stream, std::uint32_t id, auto bytes) {
            m_early.push_back({stream, id, {bytes.begin(), bytes.end()}});
        });
    }
    ReadFirst(command.input);
    const ClipInfo& info = m_source->Info();
    // The platform's decoders leave no choice of format; RGB24 takes any width.
    const bool oddMedia = !m_stream && info.width % 2 != 0;
    m_feed = command.options.feed.value_or(oddMedia ? Pixels::Rgb24 : NaturalFeed(info.layout, info.width));
    CheckFeed(info, m_feed, command.input);
    m_converter = std::make_unique<CFrameConverter>(info.layout, LayoutOf(m_feed), info.width, info.height,
                                                    info.fullRange, info.bt709);
    if (info.sampleBits > 8 && !command.options.quiet) {
        Say(Printable(command.input) + ": its " + std::to_string(info.sampleBits) +
            "-bit samples are rounded to 8 bits.\n");
    }
    if (info.rate) {
        m_rate = *info.rate;
    } else if (!command.options.quiet) {
        Say(Printable(command.input) + ": names no usable frame rate; 25 frames per second are assumed.\n");
    }
}

void CInput::Open(const Command& command) {
    const Options& options = command.options;
    const bool media = options.from == InputKind::Media;
    if (media && command.input == "-") {
        throw HostError(ExitCode::Usage, "--from media needs a file: the platform cannot decode a pipe.");
    }
    if (!media) {
        m_reader = OpenReader(command.input);
        m_stream = std::make_unique<CInputStream>(*m_reader);
    }
    const InputKind kind = options.from  ? *options.from
                           : options.raw ? InputKind::Raw
                                         : KindByContent(*m_stream, command.input != "-");
    switch (kind) {
    case InputKind::Y4m:
        m_source = OpenY4m(*m_stream);
        break;
    case InputKind::Avi:
        OpenAviOrMedia(command);
        break;
    case InputKind::Raw:
        m_source = OpenRaw(*m_stream, *options.raw);
        break;
    case InputKind::Media:
        OpenByPlatform(command.input);
        break;
    }
}

void CInput::OpenByPlatform(const std::string& path) {
    m_stream.reset();
    m_reader.reset();
    m_source = OpenMedia(path);
}

// Compressed video in a file may be something that the platform decodes.
void CInput::OpenAviOrMedia(const Command& command) {
    try {
        m_source = OpenAvi(*m_stream);
        return;
    } catch (const UnknownFormatError&) {
        if (command.options.from || command.input == "-" || !m_stream->Size()) {
            throw;
        }
    }
    OpenByPlatform(command.input);
}

void CInput::SetSidePackets(const SidePackets& packets) {
    for (const SidePacket& packet : m_early) {
        packets(packet.stream, packet.id, packet.bytes);
    }
    m_early.clear();
    m_source->SetSidePackets(packets);
}

void CInput::Close() {
    m_source.reset();
    m_stream.reset();
    m_reader.reset();
}

void CInput::ReadFirst(const std::string& name) {
    try {
        m_hasFrame = Advance();
    } catch (const std::bad_alloc&) {
        const ClipInfo& info = m_source->Info();
        throw HostError(ExitCode::Input, name + ": there is not enough memory for a frame of " +
                                             std::to_string(info.width) + "x" + std::to_string(info.height) + ".");
    }
    if (!m_hasFrame) {
        throw HostError(ExitCode::Input, name + ": has no frames.");
    }
}

// Goes to the next frame; false at the end.
bool CInput::Advance() {
    try {
        return m_source->Next();
    } catch (const DamagedError& error) {
        if (!m_keepCutOff) {
            throw HostError(ExitCode::Input, std::string(error.what()) +
                                                 " Make the input anew, or use --cut-off keep to take the whole "
                                                 "frames before that place.");
        }
        Say(Printable(error.what()) + " The whole frames before that place are kept.\n");
        return false;
    }
}

bool CInput::Read(std::uint8_t* frame) {
    if (!std::exchange(m_isFirst, false)) {
        m_hasFrame = Advance();
    }
    if (!m_hasFrame) {
        return false;
    }
    const bool fieldChroma =
        m_lines == LineSampling::Auto ? m_source->FieldChroma() : m_lines == LineSampling::Interlaced;
    const ClipInfo& info = m_source->Info();
    m_converter->Convert(m_source->Frame(), PackedFrame(m_feed, info.width, info.height, frame), fieldChroma);
    return true;
}

} // namespace host
