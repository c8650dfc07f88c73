"""Which sources are broken, and which of the sites found there are taken."""
import collections
import pathlib
import random

from mutation import sites

# room: the sources that decide something and can be judged without looking at a screen
LOGIC = {
    'wire': ['Commands', 'DropLog', 'LineServer', 'LocalListener', 'LocalPeer', 'LocalSocket',
             'Message', 'RemoteProtocol', 'SerialLine', 'SpanTable', 'Trace'],
    'link': ['BoxMarkup', 'BoxMessages', 'FrameCutter', 'LinkControl', 'LinkHealth', 'LinkMode', 'LinkWatch',
             'MessageBoxes', 'ResendCutter', 'ResendLine', 'keySerial'],
    'menus': ['GroupCells', 'ImmediateKey', 'Key', 'KeyBoard', 'KeyDefinition', 'KeyPress',
              'ListGrid', 'MainMenus', 'MenuBook', 'MenuGroups', 'MenuLimits', 'MenuMessages',
              'SpecialMenu'],
    'popups': ['AddressEntry', 'ChoiceCells', 'EditedLine', 'EntryType', 'NumberEntry',
               'NumberRanges', 'SendThrottle', 'SliderValue'],
    'spectrum': ['BusFrame', 'CardCommands', 'CardSession', 'CarrierSearch', 'ChannelMeasurements',
                 'CmdMsg', 'FrequencyAxis', 'LevelMarkers', 'NoiseMean', 'PeakSearch',
                 'QueueEntry', 'Rs422Bus', 'SpectrumTrace'],
    'scopes': ['ConstellationFit', 'ConstellationMeter', 'ConstellationSums', 'EyeMeter',
               'Interpolator', 'IqBlockDecoder', 'ModulationOrder', 'NoiseEstimate',
               'OrderFinder', 'OrderLimits', 'PointMoments', 'RangeKeeper', 'SdiDecoder',
               'SymbolPeriodFinder'],
    'plot': ['ColumnRuns', 'DataWatch', 'TextFlow', 'TickTexts'],
    'app': ['ScreenSettings', 'StageMap'],
}

# Of these rooms, only these programs judge: the others run whole windows for minutes, and reach
# nothing more of the sources above.
PROGRAMS = {'app': ['Stage']}


def all_sites(root):
    """Returns the sites of all these sources."""
    found = []
    for room, names in LOGIC.items():
        for name in names:
            file = pathlib.Path(root, 'src', room, name + '.cpp')
            if file.exists():
                found += sites.find(f'src/{room}/{name}.cpp', file.read_text())
    return found


def choose(found, count, seed, rooms):
    """Takes so many sites, the same number from each room, and never two at one place.

    The choice depends on the seed and the sources alone, and that of a room on no other room.
    """
    by_room = collections.defaultdict(list)
    for site in found:
        by_room[site.room].append(site)
    chosen = []
    for index, room in enumerate(rooms):
        share = count // len(rooms) + (index < count % len(rooms))
        order = by_room[room][:]
        random.Random(f'{seed} {room}').shuffle(order)
        taken, places = [], set()
        for site in order:
            if len(taken) < share and (site.file, site.start) not in places:
                places.add((site.file, site.start))
                taken.append(site)
        chosen += taken
    chosen.sort(key=lambda site: (list(LOGIC).index(site.room), site.file, site.line, site.column))
    for number, site in enumerate(chosen, 1):
        site.id = number
    return chosen


def read_equivalent(path):
    """Returns the keys of the mutants that no test can notice, each with the reason.

    A reason stands in the comments above the keys that it holds for.
    """
    reasons, comment, fresh = {}, [], False
    for line in pathlib.Path(path).read_text().splitlines():
        line = line.strip()
        if line.startswith('#'):
            comment = [*comment, line[1:].strip()] if fresh else [line[1:].strip()]
            fresh = True
        elif line:
            reasons[line] = ' '.join(comment)
            fresh = False
        else:
            comment, fresh = [], False
    return reasons
