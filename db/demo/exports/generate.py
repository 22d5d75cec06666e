#!/usr/bin/env python3
"""Writes the demo institute's accounting exports (Windows-1250, CR LF), deterministically:
ucty.txt the list of all accounts, pohyby.txt the MD/DAL bookings of January and February
2025, rozpocet.txt the granted budget amounts. Run it again after changing it."""
import random

rnd = random.Random(8)
GRANTS = ['1201', '1202', '1203', '1204', '1205', '1206', '2301', '2302', '2303', '2304', '2305', '2306']
# Accounts the groups count (with their upper levels), and some that no group counts.
COST = [('501100', 'Spotřeba laboratorního materiálu'), ('501200', 'Spotřeba chemikálií'),
        ('502100', 'Spotřeba energie'), ('512100', 'Cestovné tuzemské'), ('512200', 'Cestovné zahraniční'),
        ('518100', 'Ostatní služby'), ('518300', 'Služby výpočetní techniky'), ('521100', 'Mzdové náklady'),
        ('524100', 'Zákonné sociální pojištění'), ('527100', 'Zákonné sociální náklady'),
        ('549100', 'Jiné ostatní náklady'), ('551100', 'Odpisy DHM'), ('558100', 'Drobný dlouhodobý majetek')]
UNCOUNTED = [('513100', 'Náklady na reprezentaci'), ('538100', 'Jiné daně a poplatky')]
REVENUE = ('602100', 'Tržby z prodeje služeb')
UPPER = [('5', 'Náklady'), ('50', 'Spotřebované nákupy'), ('51', 'Služby'), ('52', 'Osobní náklady'),
         ('54', 'Ostatní náklady'), ('55', 'Odpisy, rezervy'), ('501', 'Spotřeba materiálu'), ('502', 'Spotřeba energie'),
         ('512', 'Cestovné'), ('518', 'Ostatní služby'), ('521', 'Mzdové náklady'), ('524', 'Zákonné pojištění'),
         ('527', 'Zákonné sociální náklady'), ('549', 'Jiné ostatní náklady'), ('551', 'Odpisy'),
         ('558', 'Náklady z drobného majetku'), ('6', 'Výnosy'), ('60', 'Tržby'), ('602', 'Tržby z prodeje služeb')]
OTHER = [('221000', 'Bankovní účty'), ('311000', 'Odběratelé'), ('321000', 'Dodavatelé'), ('331000', 'Zaměstnanci'),
         ('672100', 'Provozní dotace')]
TEXTS = ['Faktura "BioLab" reagencie', 'Nákup spotřebního materiálu', "Servis přístroje O'Neill", 'Mzdy za měsíc',
         'Cesta na konferenci; Brno', 'Licence software', "Oprava -- '; DROP TABLE x; --", 'Odpis přístroje',
         'Tržba za analýzy', 'Energie za měsíc']


def centre(grant):
    # Some exports pad the cost centre with zeros.
    return grant if rnd.random() < 0.8 else '00' + grant


def amount(share=1):
    # The same draws whatever the share, so that the rest of the files does not change with it.
    value = rnd.randint(100, 25000000) / 100
    grouped = value >= 1000 and rnd.random() < 0.3
    value = round(value / share, 2)
    text = f'{value:.2f}'.replace('.', ',')
    if grouped and value >= 1000:
        whole, cents = text.split(',')
        text = f'{int(whole):,}'.replace(',', ' ') + ',' + cents
    return text


def write(name, lines):
    with open(name, 'wb') as f:
        f.write(('\r\n'.join(lines) + '\r\n').encode('cp1250'))


accounts = ['Účet\tNázev účtu\tStředisko\tStav\tMěna']
for grant in GRANTS:
    for code, title in UPPER + COST + [REVENUE] + UNCOUNTED:
        if rnd.random() < 0.9 or len(code) < 6:
            accounts.append(f'{code}\t{title}\t{centre(grant)}\t0,00\tCZK')
for code, title in OTHER:
    accounts.append(f'{code}\t{title}\t\t0,00\tCZK')
accounts.append('Celkem účtů\t\t\t\t')
write('ucty.txt', accounts)

moves = ['Datum\tDoklad\tText\tČástka\tÚčet MD\tÚčet DAL\tStředisko MD\tStředisko DAL\tNázev MD\tNázev DAL']
number = 0
for month, days in ((1, 31), (2, 28)):
    for _ in range(1600):
        number += 1
        day = rnd.randint(1, days)
        date = f'{day:02d}.{month:02d}.2025'
        if rnd.random() < 0.1:
            date += ' 00:00:00'
        grant = rnd.choice(GRANTS)
        text = rnd.choice(TEXTS)
        doc = f'FA25{number:05d}'
        # Bookings small enough that two months draw a fair part of a grant's budget, not all of it.
        value = amount(15)
        if number % 397 == 0:
            value = '1.234,50'
        elif number % 541 == 0:
            value = 'abc'
        kind = rnd.random()
        if kind < 0.08:
            code, title = rnd.choice(UNCOUNTED)
            line = [code, '321000', centre(grant), '', title, 'Dodavatelé']
        elif kind < 0.14:
            line = ['311000', REVENUE[0], '', centre(grant), 'Odběratelé', REVENUE[1]]
        else:
            code, title = rnd.choice(COST)
            line = [code, rnd.choice(['321000', '331000']), centre(grant), '', title, 'Dodavatelé']
        moves.append('\t'.join([date, doc, text, value] + line))
    moves.append(f'Součet za {month:02d}/2025 celkem\t\t\t\t\t\t\t\t\t')
write('pohyby.txt', moves)

budget = ['Účet\tNázev účtu\tStředisko\tStav\tMěna']
for grant in GRANTS:
    for _ in range(rnd.randint(1, 3)):
        budget.append(f'672100\tProvozní dotace\t{centre(grant)}\t{amount()}\tCZK')
    if rnd.random() < 0.4:
        budget.append(f'672100\tProvozní dotace (zahraniční)\t{grant}\t{rnd.randint(1000, 90000)},00\tEUR')
    budget.append(f'311000\tOdběratelé\t{grant}\t{amount()}\tCZK')
write('rozpocet.txt', budget)
