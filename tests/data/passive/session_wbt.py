#!/usr/bin/python3
# Writes session.wbt, the macro of the session in tests/passive/macro_file_test.cpp, from the forms of its lines alone.
# The texts are exact: a comparison is byte for byte.
import os

WAIT = 'WinWaitExist ("Kavrel - PASSIVE", 2)\n'
FORM = 'WinWaitExist ("<New Passive", 2)\n'


def command(path, keys=None):
    text = WAIT + 'SendMenusTo ("Kavrel", "%s")\n' % path
    return text if keys is None else text + FORM + 'SendKey ("%s")\n' % keys


def insert(row, branch, values):
    down = '' if row == 0 else ' {DOWN}' if row == 1 else ' {DOWN %d}' % row
    keys = '{UP 9}' + down + ' {TAB} %2d' % branch + ''.join(' {TAB} %14.6E' % v for v in values) + ' ~'
    return command('Branch Insert', keys)


def d_text(value):
    return ('%14.6E' % value).replace('E', 'D')


text = WAIT + 'SendMenusTo ("Kavrel", "View Suppress")\nSendKey ("{UP} ~")\nIntControl (35, 100, 0, 0, 0)\n'
text += insert(0, 1, [50]) + insert(1, 2, [1.5e-6]) + insert(2, 3, [1e-9]) + insert(3, 4, [1e-6, 2e-9])
text += insert(5, 5, [1e-6, 2e-9, 3e-9]) + insert(6, 6, [1e-6, 2e-9, 3e-6])
text += insert(7, 2, [1e-6, 75, 2e-9]) + insert(8, 2, [1e-6, 75, 2e-9]) + insert(0, 98, [50])
text += command('Branch Insert', '{DOWN 9} {TAB} 12 {TAB}  1 ~')
text += command('Branch Delete', '12 ~')
text += command('Branch Change', ' 1 {TAB} %s {TAB} %s ~' % (d_text(75), d_text(0)))
text += command('Undo Undo') + command('Undo Redo')
text += insert(4, 4, [60])
text += WAIT + 'SendMenusTo ("Kavrel", "View Suppress")\nSendKey ("{DOWN} ~")\n'
text += WAIT + 'SendMenusTo ("Kavrel", "View Show")\n'
with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), 'session.wbt'), 'w') as file:
    file.write(text)
