-- The demo institute: one centre, a user of every role.

INSERT INTO sys_db_kvl (code_stredisko, name_stredisko, mysql_db, ip_pc, ip_server, cesta) VALUES
  ('510', 'Oddělení klinické farmakologie', 'fondarix_ofk', '127.0.0.1', '127.0.0.1', '');

INSERT INTO sys_nastaveni (Firma, Adresa, PSC, Mesto, ICO, DIC, `Cislo uctu`, `Nazev banky`, `Cislo uctu_2`, newdate_ucet) VALUES
  ('Ústav klinického výzkumu Lhotka', 'Nemocniční 1024/12', '100 00', 'Lhotka', '123 456', ' ',
   '11111-222/0100', 'Banka Lhotka-město', '99999-999/0100', '');

INSERT INTO sys_users (login, password, prijmeni, jmeno, titul, typ, filtr_grant, code_stredisko) VALUES
  ('novakova', 'grant1', 'Nováková', 'Jana', 'Ing.', 1, '0', '510'),
  ('svoboda', 'admin2', 'Svoboda', 'Petr', 'Ing.', 2, '0', '510'),
  ('dvorakova', 'lekarna3', 'Dvořáková', 'Marie', 'PharmDr.', 3, '0', '510'),
  ('cerny', 'tvurce4', 'Černý', 'Tomáš', '', 4, '0', '510'),
  ('prochazkova', 'spravce5', 'Procházková', 'Lenka', 'Bc.', 5, '0', '510'),
  ('kucera', 'super6', 'Kučera', 'Jiří', 'MUDr.', 6, '0', '510');

INSERT INTO sys_nastaveniobj (Vyrizuje, Telefon, Linka, email) VALUES
  ('Tomáš Černý', '267 161 111', '2345', 'cerny@ukv-lhotka.cz'),
  ('Lenka Procházková', '267 161 112', '2346', 'prochazkova@ukv-lhotka.cz');

INSERT INTO sys_prikazce (Jmeno) VALUES ('prof. MUDr. Karel Veselý, CSc.'), ('doc. MUDr. Eva Horáková, Ph.D.');
INSERT INTO sys_spravcerozp (Jmeno) VALUES ('Ing. Petr Svoboda'), ('Ing. Hana Marková');
