// The input that the command line names.
#pragma once

#include "host/formats/ByteStream.h"
#include "host/command/Command.h"
#include "host/picture/FrameConvert.h"
#include "host/formats/FrameSource.h"

#include <memory>

namespace host {

// Opens the input and turns its frames into those that the transform takes. Throws HostError, mostly with
// ExitCode::Input. COM and Media Foundation must be started. The first frame is read at once: nobody takes memory for
// frames of a size that only a header declares.
class CInput {
public:
    explicit CInput(const Command& command);

    const ClipInfo& Info() const { return m_source->Info(); }
    Pixels Feed() const { return m_feed; }
    // The clip's rate, or 25 frames per second where the input names none (a line on standard error then says so).
    Rational Rate() const { return m_rate; }

    // Writes the next frame, FrameSize(Feed(), ...) bytes, to `frame`; false at the end.
    bool Read(std::uint8_t* frame);

    // What is said of the lines of the frame that was read last.
    Scan FrameScan() const { return m_source->FrameScan(); }
    bool IsIrregular() const { return m_source->IsIrregular(); }
    // Who gets the packets of the clip's side streams, those at once that lie before the first frame.
    void SetSidePackets(const SidePackets& packets);

    // Lets go of the file, so that an output may take its name. Neither Info nor Read may follow.
    void Close();

private:
    void Open(const Command& command);
    void OpenByPlatform(const std::string& path);
    void OpenAviOrMedia(const Command& command);
    bool Advance();
    void ReadFirst(const std::string& name);

    std::unique_ptr<IByteReader> m_reader;
    std::unique_ptr<CInputStream> m_stream;
    std::unique_ptr<IFrameSource> m_source;
    std::unique_ptr<CFrameConverter> m_converter;
    Pixels m_feed = Pixels::Yuy2;
    Rational m_rate{25, 1};
    LineSampling m_lines;
    bool m_keepCutOff;
    bool m_isFirst = true; // the source stands at the first frame already
    bool m_hasFrame = false;

    struct SidePacket {
        std::size_t stream;
        std::uint32_t id;
        std::vector<std::uint8_t> bytes;
    };
    std::vector<SidePacket> m_early; // side packets before the first frame
};

} // namespace host
