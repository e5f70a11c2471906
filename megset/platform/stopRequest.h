#pragma once
// A person asks a program to end while it writes: what it has begun is to be cleared away first.

namespace megset {

/// Whether the program was asked to end. From then on no file can be made or written, so that what is at work fails,
/// and takes the way of any failure.
bool isStopRequested();

/// For loops that write by other means: throws std::runtime_error when the program was asked to end.
void endWhenAsked();

/// The signal that asked for it; 0 when none did.
int stopSignal();

/// While one of these lives, the signals that ask a program to end (Ctrl-C at a terminal, a request to end, the end of
/// the terminal) make isStopRequested true instead of ending it on the spot; one that comes half a second later does
/// end it. Signals that are ignored stay so. They may nest, in one thread.
class StopSignals
{
public:
    StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;
    ~StopSignals();
};

/// Ends the process as the signal does without a handler, for the program that called it to see.
void endBySignal(int signal);

} // namespace megset
