#include "sim/cli/HelpText.h"

namespace {

constexpr auto Description =
    R"(Plays the QN740 unit for a front panel: makes a directory with the unit's serial
devices, waits until the panel has opened its line, asks for its version, sends
menus and answers the operator's keys as the unit would.

What it prints (standard output, one line each):
  sim: ready DIR            the devices are in DIR
  sim: panel opened ttyO1   and "closed", "menus sent"
  panel: BODY               a message from the panel, without STX and EOT
  panel (unframed): TEXT    what stood in no frame
  sim: seed N               when faults or a seed were asked for
  sim: N of M frames came back        at the end of a replay, and what did not
  trace: SECONDS in MESSAGE           with --trace, what goes to the panel
  trace: SECONDS out MESSAGE          and what comes from it
  ignored: REASON                     with --panel-log, why the panel ignored it
and on standard error:
  refused: REASON           a line that was typed is no message and was not sent

A menu file, and what is typed on standard input, has one message a line:
  AK,Menu,id,Label,1,R1:FREQ:,2200 2400,1,,2250.5,0,1
  # a comment              (blank lines are skipped too)
  wait 500                 (milliseconds)
It may also be JSON, as "--export json" prints it; --check says by file and line what
is wrong with either, see docs/lint.md. "# qn740: ignore QN602" silences a finding.
Only typed, not in a file:
  raw \x02PING\x04         these bytes, whatever they are; the unit takes no note of them
  refuse R1:FREQ:*         as --refuse, from now on
  silent R1:FREQ:*         as --silent
  delay 500:R1:FREQ:*      as --delay
  confirm                  answer everything as it should be, at once
  unplug ttyUSB1           this device hangs up and is gone, as an adapter without its plug
  plug ttyUSB1             it is back, as another device of the same name
"\xHH" stands for the byte HH, "\\" for a backslash. A key with the command
"SK:Some Menu:" opens that menu; "PAX:1:" the PAX main menu, which a key with
"PAX:0:Some Menu:" leaves.

The unit answers a key with its new value. --refuse answers with the value from before,
--silent does not answer, --delay answers later. PATTERN stands for messages of the
panel, as R1:FREQ:2250.500000: "*" for any characters, "?" for one. A message that is
both is not answered; of several delays the last one counts. --quiet stops what the unit
sends unasked: "PM" and "SF". It sends no "PING" by itself.

The scope ports ttyUSB1 to ttyUSB3 send as the panel's "D1:DSDM:2" and the unit's
"SM,1,3" tell them: 0 nothing, 1 constellation, 2 eye pattern, 3 SDI records. While
one of them sends, "PM" tells the panel phase and magnitudes twice a second (not
with --no-menus). A signal is bpsk, qpsk, oqpsk, 8psk or 16qam, and behind it any of
  :snr=20 (dB)  :phase=3 (degrees rms)  :offset=0.001 (turns a symbol)
  :imbalance=1 (dB)  :skew=5 (degrees)  :clip=0.4  :level=0.5  :rolloff=0.35
  :band=4 (of the filter in front of the demodulator, in symbol rates)
  :dci=5  :dcq=-3 (origin offset of I and Q, in per cent of the level)
  :sps=5.5 (samples per symbol of the eye pattern, 2 to 16; 4 when not given)

The spectral cards ttyUSB11 to ttyUSB13 answer the panel's requests. The K7150 type
comes up in the panel on "ST,1", the older one is for a panel started with -noK7150.
They see noise, the demodulator's carrier, which drifts slowly by 0.1 MHz, and two
unmodulated carriers 6.2 MHz below and 4.6 MHz above it, which stay where they are.
--card-level raises the carriers: with 40 the chart shows "OVER".

The unit does what it is set to. Two transmitters are on the air, on the frequencies
that the tuners begin with, and send what the demodulators are set to:
  D1:RATE:5000000   carrier as wide as the symbols are fast; more noise in the eye the
                    faster they are (10 dB for 10 times the rate), and symbols that
                    reach into each other when the tuner's filter is too narrow
  D1:MODE:4         modulation, if the chosen text names BPSK, QPSK, OQPSK, 8PSK or
                    16QAM (D, S and others in front count as these); else as it was
  D1:ROLL:0.5       roll-off
  R1:IFBW:5         the tuner's filter, in MHz as the chosen text begins
  R1:FREQ:2251.5    the carrier moves on the chart, whose middle the panel is told by
                    "SF"; the eye closes, and beyond the filter there is only noise
Demod 1 and chart 1 are on tuner 1, Demod 2 and chart 2 on tuner 2, Demod 3 and chart
3 (the combiner's) on tuner 1. "D1 D2 D3:" and "R1 R2:" set all of them.

A recording has one line for everything that goes over the line, with the time
in seconds and anything in front; other lines in the file are skipped:
  12.345 in \x02PING\x04
  12.346 out \x02PONG\x04
In a replay the answers to PING, VER, Slave and ST,1 are waited for, one second
each at most; what the operator had pressed is not, and is no fault when nobody
presses it again.

Faults, each with a rate from 0 to 1 of the messages, blocks or replies:
%1
Examples; the panel for them is QN740_DEV=/tmp/dev qn740-panel, in another shell:
  qn740-sim --dir /tmp/dev
  printf 'AK,Mine,agc,AGC,0,R1:AGC:,,0,,0,0,1\nSK,Mine\n' >my.menu
  qn740-sim --check my.menu                     only say what is wrong with it
  qn740-sim --check my.menu --strict --format json     the same for CI
  qn740-sim --export json my.menu               print it as JSON
  qn740-sim --export dot my.menu                print the graph of its menus
  qn740-sim --dir /tmp/dev --menu my.menu       these menus
  qn740-sim --dir /tmp/dev --menu my.menu --watch        and anew when they are saved
  qn740-sim --dir /tmp/dev --refuse 'R1:*' --delay '800:D?:*'
  qn740-sim --dir /tmp/dev --trace-not PM,SF --quiet PM
  echo 'DB,Antenna fault,1' | qn740-sim --dir /tmp/dev
  qn740-sim --dir /tmp/dev --no-menus --trace   type every message, see both ways
  qn740-sim --dir /tmp/dev --record talk.log    keep what was said
  qn740-sim --dir /tmp/dev --replay talk.log    say it again, at its own pace
  QN740_DEV=/tmp/dev QT_LOGGING_RULES=qn740.link.debug=true qn740-panel 2>panel.log
  qn740-sim --dir /tmp/dev --replay panel.log --fast
  qn740-sim --dir /tmp/dev --fault drop=0.01,junk=0.05 --fault burst=0.1 --seed 7
  qn740-sim --dir /tmp/dev --signal 16qam:snr=25:phase=2 --fault scope-loss=0.1
  qn740-sim --dir /tmp/dev --card-level 40      overload the spectral cards
  qn740-sim --dir /tmp/dev --card older --fault card-cut=0.1,card-no-reply=0.2)";

} // namespace

QString helpText(const QString& faults)
{
    return QString::fromLatin1(Description).arg(faults);
}
