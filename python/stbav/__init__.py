# stbav: test rigs for the stbav daemon in Python. A link that talks to the
# daemon over its serial line by operation name, the virtual board's control
# socket, pcap captures of the line, and a pytest plugin (stbav.pytest_plugin)
# with the fixtures board, daemon and host.
#
#   import stbav
#   link = stbav.connect("/dev/ttyUSB0")
#   link.send(videooutputFormatMode=2, videooutputManualFormat="1920x1080p50"); link.apply()
#   link.wait_for("videooutputCurrentOutputFormat", "1920x1080p50")
"""Test rigs for the stbav daemon: serial link by operation name, virtual board, pcap captures."""
from .board import Board, BoardError
from .codec import CodecError, Frame, LineDecoder, Op, encode_frame, format_text, parse_format
from .link import Counters, Link, LinkError, connect
from .pcap import Chunk, PcapError, PcapWriter, decode_chunks, read_pcap, write_pcap

__all__ = ["Board", "BoardError", "Chunk", "CodecError", "Counters", "Frame", "Link", "LinkError", "LineDecoder",
           "Op", "PcapError", "PcapWriter", "connect", "decode_chunks", "encode_frame", "format_text",
           "parse_format", "read_pcap", "write_pcap"]
