"""The files that make ipmi_sim play a Board, and the file of what a reader of it has to find."""

import json
from pathlib import Path

from .board import BMC_ADDRESS

LAN_USER, LAN_PASSWORD = "hwuser", "hwpass"

LAN_CONF = """name "{name}"
set_working_mc {bmc:#x}
  startlan 1
    addr 127.0.0.1 {lan_port}
    priv_limit admin
    allowed_auths_callback none md2 md5 straight
    allowed_auths_user none md2 md5 straight
    allowed_auths_operator none md2 md5 straight
    allowed_auths_admin none md2 md5 straight
    guid a123456789abcdefa123456789abcdef
  endlan
  serial kcs 127.0.0.1 {serial_port} codec VM
  user 1 true "" "none" user 10 none md2 md5 straight
  user 2 true "{user}" "{password}" admin 10 none md2 md5 straight
"""


def write_board(board, folder):
    """Writes board.emu, state/ (the event log before the first start) and expected.json to `folder`."""
    folder = Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "board.emu").write_text("\n".join(emulator_lines(board)) + "\n")
    (folder / "expected.json").write_text(json.dumps(expected(board), indent=1) + "\n")
    state = folder / "state" / "ipmi_sim" / board.name
    state.mkdir(parents=True, exist_ok=True)
    if board.events:
        lines = [f"last_add_time:i:{max(_event_time(e) for e in board.events)}"]
        # the simulator takes the last line of a state file first
        lines += [f"{e[0] | e[1] << 8}:d:" + "".join("\\%02x" % byte for byte in e) for e in reversed(board.events)]
        (state / f"sel.{BMC_ADDRESS:x}").write_text("\n".join(lines) + "\n")


def lan_conf(name, lan_port, serial_port, more=""):
    """Text of ipmi_sim's -c file: a LAN interface and a VM serial line, both on loopback; `more` lines of it."""
    return LAN_CONF.format(name=name, bmc=BMC_ADDRESS, lan_port=lan_port, serial_port=serial_port, user=LAN_USER,
                           password=LAN_PASSWORD) + more


def emulator_lines(board):
    lines = [f"mc_setbmc {BMC_ADDRESS:#x}", *board.controllers, f"sel_enable {BMC_ADDRESS:#x} 4000 0x0a"]
    lines += [f"main_sdr_add {BMC_ADDRESS:#x} {_hex(record)}" for record in board.records]
    lines += board.commands
    lines += [f"mc_add_fru_data {BMC_ADDRESS:#x} {fru_id} {fru['size']} data {_hex(fru['data'])}"
              for fru_id, fru in sorted(board.frus.items())]
    lines += [f"mc_enable {owner:#x}" for owner in sorted(board.owners)]
    return lines


def expected(board):
    return dict(board=board.name, identity=board.identity, records=[_hex(r) for r in board.records],
                sensors=board.sensors, fru={str(i): fru["areas"] for i, fru in board.frus.items()},
                events=[_hex(e) for e in board.events])


def _event_time(event):
    return sum(byte << 8 * i for i, byte in enumerate(event[3:7])) if event[2] < 0xE0 else 0


def _hex(data):
    return " ".join("%#04x" % byte for byte in data)
