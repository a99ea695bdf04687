// Where the chroma rows of 4:2:0 lie.
#pragma once

namespace host {

// The two chroma rows that a luma row lies between, and their shares in eighths.
struct ChromaTap {
    int nearRow;
    int farRow;
    int nearShare;
    int farShare;
};

// For 4:2:0 with `chromaRows` chroma rows.
// Frame-wise, a chroma row lies midway between its two luma rows, so each takes three quarters of it and one quarter of
// the next one on its side. Field-wise, chroma rows alternate between the fields as luma rows do; within its field a
// chroma row lies a quarter (top field) or three quarters (bottom field) of the way from its first luma row to its
// second, and only rows of the same field are mixed: chroma of the two moments never runs into each other.
ChromaTap TapFor420(int lumaRow, int chromaRows, bool fieldWise);

// The four rows of full height chroma that a chroma row of 4:2:0 is made from, and their shares in sixteenths.
struct ChromaSum {
    int row[4];
    int share[4];
};

// The way back, to the same places. Without `undo` the two nearest rows are weighed by their distance; with it, what
// TapFor420 made gives the original again but for rounding (and the last row of an odd number of rows of a field).
ChromaSum SumFor420(int chromaRow, int lumaRows, bool fieldWise, bool undo);

} // namespace host
