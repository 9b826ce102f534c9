<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>SealedPackageBuilder</name>
    <message>
        <source> (and %1 more)</source>
        <translation> (und %1 weitere)</translation>
    </message>
    <message>
        <source> Clear</source>
        <translation> Leeren</translation>
    </message>
    <message>
        <source> and %1 more</source>
        <translation> und %1 weitere</translation>
    </message>
    <message>
        <source> changed</source>
        <translation> geändert</translation>
    </message>
    <message>
        <source> key type</source>
        <translation> Schlüsselart</translation>
    </message>
    <message>
        <source> put the old key back</source>
        <translation> alten Schlüssel zurückholen</translation>
    </message>
    <message>
        <source> text doesn't fit</source>
        <translation> Text passt nicht</translation>
    </message>
    <message>
        <source>"Open" chooses the file; it can be dropped here, too</source>
        <translation>„Öffnen“ wählt die Datei; sie lässt sich auch hierher ziehen</translation>
    </message>
    <message>
        <source>%1
new</source>
        <translation>%1
neu</translation>
    </message>
    <message>
        <source>%1 Memory map</source>
        <translation>Speicherkarte %1</translation>
    </message>
    <message>
        <source>%1 Open</source>
        <translation>%1 Öffnen</translation>
    </message>
    <message>
        <source>%1 Regenerate</source>
        <translation>%1 Neu erzeugen</translation>
    </message>
    <message>
        <source>%1 and %2</source>
        <translation>%1 und %2</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Bytes</translation>
    </message>
    <message>
        <source>%1 bytes, but %2 to %3 are allowed</source>
        <translation>%1 Bytes, erlaubt sind aber %2 bis %3</translation>
    </message>
    <message>
        <source>%1 height</source>
        <translation>%1: Höhe</translation>
    </message>
    <message>
        <source>%1 of these values can't be taken back</source>
        <translation>%1 dieser Werte lassen sich nicht zurücknehmen</translation>
    </message>
    <message>
        <source>%1 pixels</source>
        <translation>%1 Bildpunkte</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>%1 to %2 bytes</source>
        <translation>%1 bis %2 Bytes</translation>
    </message>
    <message>
        <source>%1, index %2, %3 licences left</source>
        <translation>%1, Index %2, noch %3 Lizenzen</translation>
    </message>
    <message>
        <source>%1, serial %2, %3</source>
        <translation>%1, Seriennummer %2, %3</translation>
    </message>
    <message>
        <source>%1; and %2 more</source>
        <translation>%1; und %2 weitere</translation>
    </message>
    <message>
        <source>&amp;AN4100 Secure programming using VDR32FlashBench</source>
        <translation>&amp;AN4100 Sicheres Programmieren mit VDR32FlashBench</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>Ü&amp;ber</translation>
    </message>
    <message>
        <source>&amp;Check SFI/SMI</source>
        <translation>SFI/SMI &amp;prüfen</translation>
    </message>
    <message>
        <source>&amp;Chip public keys</source>
        <translation>Öffentliche &amp;Chip-Schlüssel</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Doc</source>
        <translation>Do&amp;kumente</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>B&amp;earbeiten</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Generate SFI</source>
        <translation>SFI erzeu&amp;gen</translation>
    </message>
    <message>
        <source>&amp;Generate SFIx</source>
        <translation>SFIx erzeu&amp;gen</translation>
    </message>
    <message>
        <source>&amp;Generate SFU</source>
        <translation>SFU erzeu&amp;gen</translation>
    </message>
    <message>
        <source>&amp;Generate SIGN</source>
        <translation>SIGN erzeu&amp;gen</translation>
    </message>
    <message>
        <source>&amp;Generate SSP</source>
        <translation>SSP erzeu&amp;gen</translation>
    </message>
    <message>
        <source>&amp;Generate certificate</source>
        <translation>Zertifikat erzeu&amp;gen</translation>
    </message>
    <message>
        <source>&amp;Generate licences</source>
        <translation>Lizenzen erzeu&amp;gen</translation>
    </message>
    <message>
        <source>&amp;Info</source>
        <translation>&amp;Info</translation>
    </message>
    <message>
        <source>&amp;Key address:      </source>
        <translation>S&amp;chlüsseladresse:</translation>
    </message>
    <message>
        <source>&amp;Lifecycle</source>
        <translation>&amp;Lebenszyklus</translation>
    </message>
    <message>
        <source>&amp;Log</source>
        <translation>&amp;Protokoll</translation>
    </message>
    <message>
        <source>&amp;Microcontroller</source>
        <translation>&amp;Mikrocontroller</translation>
    </message>
    <message>
        <source>&amp;Nonce file</source>
        <translation>&amp;Nonce-Datei</translation>
    </message>
    <message>
        <source>&amp;Options</source>
        <translation>&amp;Optionen</translation>
    </message>
    <message>
        <source>&amp;PIN</source>
        <translation>&amp;PIN</translation>
    </message>
    <message>
        <source>&amp;Parse sfi, ssfi, mcsv file</source>
        <translation>sfi-, ssfi-, mcsv-Datei &amp;prüfen</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>&amp;Permissions</source>
        <translation>&amp;Berechtigungen</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>&amp;Region number:</source>
        <translation>&amp;Regionsnummer:</translation>
    </message>
    <message>
        <source>&amp;Role</source>
        <translation>&amp;Rolle</translation>
    </message>
    <message>
        <source>&amp;SSFI file (Optional)</source>
        <translation>&amp;SSFI-Datei (optional)</translation>
    </message>
    <message>
        <source>&amp;Secrets file</source>
        <translation>&amp;Secrets-Datei</translation>
    </message>
    <message>
        <source>&amp;Section to encrypt</source>
        <translation>Zu verschlüsselnde &amp;Sektion</translation>
    </message>
    <message>
        <source>&amp;Secure update (SFU)</source>
        <translation>&amp;Sicheres Update (SFU)</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>&amp;Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Start address : </source>
        <translation>&amp;Startadresse: </translation>
    </message>
    <message>
        <source>&amp;Start address:   </source>
        <translation>&amp;Startadresse:</translation>
    </message>
    <message>
        <source>&amp;Token</source>
        <translation>&amp;Token</translation>
    </message>
    <message>
        <source>&amp;UM4100 Sealed Package Builder User Manual</source>
        <translation>&amp;UM4100 Benutzerhandbuch Sealed Package Builder</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Usage</source>
        <translation>&amp;Verwendung</translation>
    </message>
    <message>
        <source>&amp;Write certificate to</source>
        <translation>&amp;Zertifikat schreiben nach</translation>
    </message>
    <message>
        <source>, %1 free</source>
        <translation>, %1 frei</translation>
    </message>
    <message>
        <source>- Select MCU -</source>
        <translation>- MCU wählen -</translation>
    </message>
    <message>
        <source>- Select MPU -</source>
        <translation>- MPU wählen -</translation>
    </message>
    <message>
        <source>- Select token -</source>
        <translation>- Token wählen -</translation>
    </message>
    <message>
        <source>0: any device</source>
        <translation>0: jeder Baustein</translation>
    </message>
    <message>
        <source>0: any device; up to 32 hexadecimal digits</source>
        <translation>0: jeder Baustein; bis zu 32 Hexadezimalziffern</translation>
    </message>
    <message>
        <source>0x00</source>
        <translation>0x00</translation>
    </message>
    <message>
        <source>0xFF</source>
        <translation>0xFF</translation>
    </message>
    <message>
        <source>0x…</source>
        <translation>0x…</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 Byte</translation>
    </message>
    <message>
        <source>1 of these values can't be taken back</source>
        <translation>1 dieser Werte lässt sich nicht zurücknehmen</translation>
    </message>
    <message>
        <source>1 to 15 bytes</source>
        <translation>1 bis 15 Bytes</translation>
    </message>
    <message>
        <source>1 to 15 bytes, as on the token</source>
        <translation>1 bis 15 Bytes, wie auf dem Token</translation>
    </message>
    <message>
        <source>12 bytes, .bin</source>
        <translation>12 Bytes, .bin</translation>
    </message>
    <message>
        <source>16 bits that the device's maker has set, decimal or 0x and hexadecimal digits; 0 is any</source>
        <translation>16 Bits, die der Hersteller des Bausteins gesetzt hat, dezimal oder 0x und Hexadezimalziffern; 0 steht für jeden</translation>
    </message>
    <message>
        <source>16 bytes, .bin</source>
        <translation>16 Bytes, .bin</translation>
    </message>
    <message>
        <source>; no module can be made</source>
        <translation>; es lässt sich kein Modul erzeugen</translation>
    </message>
    <message>
        <source>A certificate or chain that is there already is shown here.</source>
        <translation>Hier wird ein bereits vorhandenes Zertifikat oder eine Kette angezeigt.</translation>
    </message>
    <message>
        <source>A certificate or chain to look into.
cert or b64 file</source>
        <translation>Ein Zertifikat oder eine Kette zum Ansehen.
cert- oder b64-Datei</translation>
    </message>
    <message>
        <source>A device would not take this chain, or not for all its rights:</source>
        <translation>Ein Baustein würde diese Kette nicht annehmen oder nicht mit allen Rechten:</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Add files or drop them here</source>
        <translation>Dateien hinzufügen oder hierher ziehen</translation>
    </message>
    <message>
        <source>Add public keys of chips or drop them here</source>
        <translation>Öffentliche Schlüssel von Chips hinzufügen oder hierher ziehen</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Address of the continuation token for a multi-image SFI</source>
        <translation>Adresse des Fortsetzungs-Tokens für ein SFI aus mehreren Images</translation>
    </message>
    <message>
        <source>Adds 0x%1 to the permissions</source>
        <translation>Fügt den Berechtigungen 0x%1 hinzu</translation>
    </message>
    <message>
        <source>Adds a check block that shows damage without a key</source>
        <translation>Fügt einen Prüfblock an, der Schäden auch ohne Schlüssel zeigt</translation>
    </message>
    <message>
        <source>Adds files; they can be dropped on the list, too</source>
        <translation>Fügt Dateien hinzu; sie lassen sich auch auf die Liste ziehen</translation>
    </message>
    <message>
        <source>Adds neither this file nor those that follow</source>
        <translation>Fügt weder diese Datei noch die folgenden hinzu</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>All bits from %1</source>
        <translation>Alle Bits aus %1</translation>
    </message>
    <message>
        <source>An image or a modules list to look into.
sfi, sfix, ssfi or mcsv file</source>
        <translation>Ein Image oder eine Modulliste zum Ansehen.
sfi-, sfix-, ssfi- oder mcsv-Datei</translation>
    </message>
    <message>
        <source>And %1 more</source>
        <translation>Und %1 weitere</translation>
    </message>
    <message>
        <source>Any (bits by number)</source>
        <translation>Beliebig (Bits nach Nummer)</translation>
    </message>
    <message>
        <source>Area K (*.kcsv)</source>
        <translation>Bereich K (*.kcsv)</translation>
    </message>
    <message>
        <source>Arrow keys walk over the bits, Space flips, Enter opens a box.</source>
        <translation>Pfeiltasten gehen über die Bits, die Leertaste kippt, die Eingabetaste öffnet ein Auswahlfeld.</translation>
    </message>
    <message>
        <source>Available RAM si&amp;ze (Byte)</source>
        <translation>Verfügb&amp;arer RAM (Byte)</translation>
    </message>
    <message>
        <source>Binary</source>
        <translation>Binär</translation>
    </message>
    <message>
        <source>Binary files (*.bin)</source>
        <translation>Binärdateien (*.bin)</translation>
    </message>
    <message>
        <source>Binary files (*.mcsv)</source>
        <translation>Binärdateien (*.mcsv)</translation>
    </message>
    <message>
        <source>Binary files (*.ssfi)</source>
        <translation>Binärdateien (*.ssfi)</translation>
    </message>
    <message>
        <source>Binary or PEM files (*.bin *.pem)</source>
        <translation>Binär- oder PEM-Dateien (*.bin *.pem)</translation>
    </message>
    <message>
        <source>Bit %1</source>
        <translation>Bit %1</translation>
    </message>
    <message>
        <source>Bit %1, %2</source>
        <translation>Bit %1, %2</translation>
    </message>
    <message>
        <source>Bits of %1</source>
        <translation>Bits von %1</translation>
    </message>
    <message>
        <source>Block</source>
        <translation>Block</translation>
    </message>
    <message>
        <source>Boot image</source>
        <translation>Boot-Image</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Durchsuchen</translation>
    </message>
    <message>
        <source>Bytes</source>
        <translation>Bytes</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>CSV files (*.csv)</source>
        <translation>CSV-Dateien (*.csv)</translation>
    </message>
    <message>
        <source>Cancel &amp;all</source>
        <translation>&amp;Alle abbrechen</translation>
    </message>
    <message>
        <source>Cancel all</source>
        <translation>Alle abbrechen</translation>
    </message>
    <message>
        <source>Cancel the operation</source>
        <translation>Vorgang abbrechen</translation>
    </message>
    <message>
        <source>Certificate</source>
        <translation>Zertifikat</translation>
    </message>
    <message>
        <source>Certificate information</source>
        <translation>Angaben zum Zertifikat</translation>
    </message>
    <message>
        <source>Certificate or chain, .cert or .b64</source>
        <translation>Zertifikat oder Kette, .cert oder .b64</translation>
    </message>
    <message>
        <source>Certificate to &amp;show</source>
        <translation>Anz&amp;uzeigendes Zertifikat</translation>
    </message>
    <message>
        <source>Certificates (*.b64 *.cert)</source>
        <translation>Zertifikate (*.b64 *.cert)</translation>
    </message>
    <message>
        <source>Chain to be made</source>
        <translation>Entstehende Kette</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>Änderungen</translation>
    </message>
    <message>
        <source>Check block</source>
        <translation>Prüfblock</translation>
    </message>
    <message>
        <source>Chip key file</source>
        <translation>Chip-Schlüsseldatei</translation>
    </message>
    <message>
        <source>Choose OTHER to type a number</source>
        <translation>Wählen Sie OTHER, um eine Nummer einzugeben</translation>
    </message>
    <message>
        <source>Choose a microcontroller to see its option bytes.</source>
        <translation>Wählen Sie einen Mikrocontroller, um seine Option-Bytes zu sehen.</translation>
    </message>
    <message>
        <source>Class</source>
        <translation>Klasse</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Close segments</source>
        <translation>Nahe Segmente</translation>
    </message>
    <message>
        <source>Close segments: %1 between %2</source>
        <translation>Nahe Segmente: %1 zwischen %2</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Command Copy</source>
        <translation>Befehl kopieren</translation>
    </message>
    <message>
        <source>Continuation token &amp;address</source>
        <translation>Adresse des &amp;Fortsetzungs-Tokens</translation>
    </message>
    <message>
        <source>Copies the command for a shell</source>
        <translation>Kopiert den Befehl für eine Shell</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;all</source>
        <translation>&amp;Alles kopieren</translation>
    </message>
    <message>
        <source>Copy path</source>
        <translation>Pfad kopieren</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>Curve</source>
        <translation>Kurve</translation>
    </message>
    <message>
        <source>DA CertifGen</source>
        <translation>DA-Zertifikate</translation>
    </message>
    <message>
        <source>De&amp;vice :</source>
        <translation>&amp;Baustein:</translation>
    </message>
    <message>
        <source>Decimal, or hexadecimal behind 0x</source>
        <translation>Dezimal, oder hexadezimal hinter 0x</translation>
    </message>
    <message>
        <source>Decrypting %1</source>
        <translation>%1 wird entschlüsselt</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Vorgabe</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Baustein</translation>
    </message>
    <message>
        <source>Device famil&amp;y</source>
        <translation>Baustein&amp;familie</translation>
    </message>
    <message>
        <source>Double-click a line to see its field</source>
        <translation>Ein Doppelklick auf eine Zeile zeigt ihr Feld</translation>
    </message>
    <message>
        <source>Drag, or press Up and Down, to change the list's height; a double click or Enter gives it back</source>
        <translation>Ziehen oder Pfeil auf und ab ändern die Höhe der Liste; Doppelklick oder Eingabetaste stellt sie wieder her</translation>
    </message>
    <message>
        <source>E&amp;LF file</source>
        <translation>E&amp;LF-Datei</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>E&amp;xternal firmware files</source>
        <translation>E&amp;xterne Firmware-Dateien</translation>
    </message>
    <message>
        <source>EC Private key file Path</source>
        <translation>Pfad des privaten EC-Schlüssels</translation>
    </message>
    <message>
        <source>EC private &amp;key file</source>
        <translation>Privater EC-S&amp;chlüssel</translation>
    </message>
    <message>
        <source>EC private key</source>
        <translation>privater EC-Schlüssel</translation>
    </message>
    <message>
        <source>ELF Machine</source>
        <translation>ELF-Maschine</translation>
    </message>
    <message>
        <source>ELF Type</source>
        <translation>ELF-Typ</translation>
    </message>
    <message>
        <source>ELF file</source>
        <translation>ELF-Datei</translation>
    </message>
    <message>
        <source>ELF files (*.elf *.axf *.o *.so *.out)</source>
        <translation>ELF-Dateien (*.elf *.axf *.o *.so *.out)</translation>
    </message>
    <message>
        <source>ELF information</source>
        <translation>Angaben zur ELF-Datei</translation>
    </message>
    <message>
        <source>Each further raw binary of this choice
goes to the next free address, unasked</source>
        <translation>Jede weitere Binärdatei dieser Auswahl
kommt ohne Frage an die nächste freie Adresse</translation>
    </message>
    <message>
        <source>Edit address</source>
        <translation>Adresse ändern</translation>
    </message>
    <message>
        <source>Empties all forms; Edit, Undo brings them back</source>
        <translation>Leert alle Formulare; „Bearbeiten“, „Rückgängig“ holt sie zurück</translation>
    </message>
    <message>
        <source>Empties the path: the command does without it</source>
        <translation>Leert den Pfad: der Befehl kommt ohne ihn aus</translation>
    </message>
    <message>
        <source>Encrypting %1</source>
        <translation>%1 wird verschlüsselt</translation>
    </message>
    <message>
        <source>Encryption &amp;key file</source>
        <translation>S&amp;chlüsseldatei</translation>
    </message>
    <message>
        <source>Encryption Option</source>
        <translation>Verschlüsselung</translation>
    </message>
    <message>
        <source>External firmware</source>
        <translation>Externe Firmware</translation>
    </message>
    <message>
        <source>External firmware file: </source>
        <translation>Externe Firmware-Datei: </translation>
    </message>
    <message>
        <source>External firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)</source>
        <translation>Externe Firmware-Dateien (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)</translation>
    </message>
    <message>
        <source>Fault</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Fi&amp;rmware file</source>
        <translation>Fi&amp;rmware-Datei</translation>
    </message>
    <message>
        <source>Fi&amp;rmware files</source>
        <translation>Fi&amp;rmware-Dateien</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Fields of the template</source>
        <translation>Felder der Vorlage</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>File size</source>
        <translation>Dateigröße</translation>
    </message>
    <message>
        <source>Find on this page</source>
        <translation>Auf dieser Seite suchen</translation>
    </message>
    <message>
        <source>Firm&amp;ware identifier</source>
        <translation>Firm&amp;ware-Kennung</translation>
    </message>
    <message>
        <source>Firmware and keys (*.hex *.srec *.s19 *.s28 *.s37 *.mot *.elf *.axf *.out *.bin *.pem);;All files (*)</source>
        <translation>Firmware und Schlüssel (*.hex *.srec *.s19 *.s28 *.s37 *.mot *.elf *.axf *.out *.bin *.pem);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)</source>
        <translation>Firmware-Dateien (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)</translation>
    </message>
    <message>
        <source>Firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.out)</source>
        <translation>Firmware-Dateien (*.bin *.hex *.srec *.s19 *.elf *.axf *.out)</translation>
    </message>
    <message>
        <source>Firmware information</source>
        <translation>Angaben zur Firmware</translation>
    </message>
    <message>
        <source>Firmware on the token</source>
        <translation>Firmware auf dem Token</translation>
    </message>
    <message>
        <source>Flags</source>
        <translation>Kennzeichen</translation>
    </message>
    <message>
        <source>Folder of the lic files</source>
        <translation>Ordner der lic-Dateien</translation>
    </message>
    <message>
        <source>Free space</source>
        <translation>Freier Platz</translation>
    </message>
    <message>
        <source>Generate</source>
        <translation>Erzeugen</translation>
    </message>
    <message>
        <source>Generate &amp;Hash</source>
        <translation>&amp;Hash erzeugen</translation>
    </message>
    <message>
        <source>Generate OB</source>
        <translation>OB erzeugen</translation>
    </message>
    <message>
        <source>Generate OBkey</source>
        <translation>OBkey erzeugen</translation>
    </message>
    <message>
        <source>Generate S&amp;MI</source>
        <translation>S&amp;MI erzeugen</translation>
    </message>
    <message>
        <source>Generate image</source>
        <translation>Image erzeugen</translation>
    </message>
    <message>
        <source>Generate log file</source>
        <translation>Protokolldatei schreiben</translation>
    </message>
    <message>
        <source>Generate settings file</source>
        <translation>Einstellungsdatei schreiben</translation>
    </message>
    <message>
        <source>Global license</source>
        <translation>Globale Lizenz</translation>
    </message>
    <message>
        <source>H5 Secure Firmware</source>
        <translation>H5 Sichere Firmware</translation>
    </message>
    <message>
        <source>H5-Image Gen %1</source>
        <translation>H5-Images %1</translation>
    </message>
    <message>
        <source>HSM</source>
        <translation>HSM</translation>
    </message>
    <message>
        <source>HSM FW ID</source>
        <translation>HSM-FW-ID</translation>
    </message>
    <message>
        <source>HSM information</source>
        <translation>HSM-Inhalt</translation>
    </message>
    <message>
        <source>Header Size</source>
        <translation>Header-Größe</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Help for the tab in front</source>
        <translation>Hilfe zum Reiter vorn</translation>
    </message>
    <message>
        <source>Help page</source>
        <translation>Hilfeseite</translation>
    </message>
    <message>
        <source>How many licences the token may make.
The token counts down and then refuses</source>
        <translation>Wie viele Lizenzen das Token ausstellen darf.
Das Token zählt herunter und verweigert dann</translation>
    </message>
    <message>
        <source>I&amp;nput image file</source>
        <translation>Ei&amp;ngabe-Image</translation>
    </message>
    <message>
        <source>Identifier</source>
        <translation>Kennung</translation>
    </message>
    <message>
        <source>If this option is enabled a .ini file is generated in the executable folder to save the application state</source>
        <translation>Ist diese Option gesetzt, wird im Programmordner eine .ini-Datei geschrieben, die den Zustand des Programms festhält</translation>
    </message>
    <message>
        <source>If this option is enabled a log file is generated in the chosen path</source>
        <translation>Ist diese Option gesetzt, wird im gewählten Ordner eine Protokolldatei geschrieben</translation>
    </message>
    <message>
        <source>Image &amp;version</source>
        <translation>Image-&amp;Version</translation>
    </message>
    <message>
        <source>Image Gen</source>
        <translation>Images</translation>
    </message>
    <message>
        <source>Image or modules list</source>
        <translation>Image oder Modulliste</translation>
    </message>
    <message>
        <source>Image tool</source>
        <translation>Image-Werkzeug</translation>
    </message>
    <message>
        <source>Image version</source>
        <translation>Image-Version</translation>
    </message>
    <message>
        <source>Image version between 0 and 255</source>
        <translation>Image-Version zwischen 0 und 255</translation>
    </message>
    <message>
        <source>Image version between 0 and 255, decimal or 0x and hexadecimal</source>
        <translation>Image-Version zwischen 0 und 255, dezimal oder 0x und hexadezimal</translation>
    </message>
    <message>
        <source>Image, .ssfi</source>
        <translation>Image, .ssfi</translation>
    </message>
    <message>
        <source>Images (*.bin *.hex *.srec *.s19)</source>
        <translation>Images (*.bin *.hex *.srec *.s19)</translation>
    </message>
    <message>
        <source>Images of this device always do</source>
        <translation>Bei Images dieses Bausteins immer</translation>
    </message>
    <message>
        <source>Inde&amp;x</source>
        <translation>Inde&amp;x</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>Index</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Angaben</translation>
    </message>
    <message>
        <source>Inte&amp;rnal firmware files</source>
        <translation>Inte&amp;rne Firmware-Dateien</translation>
    </message>
    <message>
        <source>Intermediate Pu&amp;blic Key</source>
        <translation>Öffentlicher Zwisc&amp;henschlüssel</translation>
    </message>
    <message>
        <source>Internal firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)</source>
        <translation>Interne Firmware-Dateien (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)</translation>
    </message>
    <message>
        <source>Issuer</source>
        <translation>Aussteller</translation>
    </message>
    <message>
        <source>Issuer Private &amp;Key</source>
        <translation>Privater Au&amp;sstellerschlüssel</translation>
    </message>
    <message>
        <source>Issuer Private &amp;Key          </source>
        <translation>Privater Au&amp;sstellerschlüssel </translation>
    </message>
    <message>
        <source>It can't make licences: it lacks %1.</source>
        <translation>Es kann keine Lizenzen ausstellen: Ihm fehlt %1.</translation>
    </message>
    <message>
        <source>It is write-protected.</source>
        <translation>Es ist schreibgeschützt.</translation>
    </message>
    <message>
        <source>Keeps the forms and leaves the program</source>
        <translation>Merkt sich die Formulare und beendet das Programm</translation>
    </message>
    <message>
        <source>Keeps the values in the template</source>
        <translation>Speichert die Werte in der Vorlage</translation>
    </message>
    <message>
        <source>Key address</source>
        <translation>Schlüsseladresse</translation>
    </message>
    <message>
        <source>Key area, .kcsv</source>
        <translation>Schlüsselbereich, .kcsv</translation>
    </message>
    <message>
        <source>Key check value</source>
        <translation>Schlüsselprüfwert</translation>
    </message>
    <message>
        <source>Key files (*.pem *.bin)</source>
        <translation>Schlüsseldateien (*.pem *.bin)</translation>
    </message>
    <message>
        <source>Key identifier</source>
        <translation>Schlüsselkennung</translation>
    </message>
    <message>
        <source>Keys behind a pass phrase can't be used in this version</source>
        <translation>Schlüssel mit Passphrase lassen sich in dieser Version nicht verwenden</translation>
    </message>
    <message>
        <source>Kind of device that takes the certificate: 32 bits, decimal or 0x and hexadecimal digits; 0 is any</source>
        <translation>Art des Bausteins, der das Zertifikat annimmt: 32 Bits, dezimal oder 0x und Hexadezimalziffern; 0 steht für jeden</translation>
    </message>
    <message>
        <source>Last file size</source>
        <translation>Größe der letzten Datei</translation>
    </message>
    <message>
        <source>Leaf Pu&amp;blic Key      </source>
        <translation>Öffentlicher Endsc&amp;hlüssel</translation>
    </message>
    <message>
        <source>Left out while empty</source>
        <translation>Entfällt, solange leer</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Licen&amp;ces</source>
        <translation>Li&amp;zenzen</translation>
    </message>
    <message>
        <source>Licence information</source>
        <translation>Angaben zu den Lizenzen</translation>
    </message>
    <message>
        <source>Licences</source>
        <translation>Lizenzen</translation>
    </message>
    <message>
        <source>Licences can be made with this firmware's key</source>
        <translation>Mit dem Schlüssel dieser Firmware lassen sich Lizenzen ausstellen</translation>
    </message>
    <message>
        <source>Licences left</source>
        <translation>Übrige Lizenzen</translation>
    </message>
    <message>
        <source>License Gen</source>
        <translation>Lizenzen</translation>
    </message>
    <message>
        <source>Lifecycle</source>
        <translation>Lebenszyklus</translation>
    </message>
    <message>
        <source>Lifecycle nu&amp;mber</source>
        <translation>Nu&amp;mmer des Lebenszyklus</translation>
    </message>
    <message>
        <source>Load the values of a CSV file into the registers.
csv file</source>
        <translation>Lädt die Werte einer CSV-Datei in die Register.
csv-Datei</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Log file</source>
        <translation>Protokolldatei</translation>
    </message>
    <message>
        <source>Log file Select folder</source>
        <translation>Ordner der Protokolldatei wählen</translation>
    </message>
    <message>
        <source>Looking for tokens, please wait ...</source>
        <translation>Es wird nach Token gesucht, bitte warten ...</translation>
    </message>
    <message>
        <source>MPU SSP</source>
        <translation>MPU-SSP</translation>
    </message>
    <message>
        <source>Maker</source>
        <translation>Hersteller</translation>
    </message>
    <message>
        <source>Makes a new key pair; an old key is kept under another name</source>
        <translation>Erzeugt ein neues Schlüsselpaar; ein alter Schlüssel bleibt unter anderem Namen erhalten</translation>
    </message>
    <message>
        <source>Making %1, please wait ...</source>
        <translation>%1 wird erzeugt, bitte warten ...</translation>
    </message>
    <message>
        <source>Making licences, please wait ...</source>
        <translation>Lizenzen werden erzeugt, bitte warten ...</translation>
    </message>
    <message>
        <source>Microcontroller</source>
        <translation>Mikrocontroller</translation>
    </message>
    <message>
        <source>Mod&amp;ules file (Optional)</source>
        <translation>Modu&amp;lliste (optional)</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>Module</source>
        <translation>Modul</translation>
    </message>
    <message>
        <source>Module size</source>
        <translation>Modulgröße</translation>
    </message>
    <message>
        <source>Modules</source>
        <translation>Module</translation>
    </message>
    <message>
        <source>Modules list, .mcsv</source>
        <translation>Modulliste, .mcsv</translation>
    </message>
    <message>
        <source>Modules number</source>
        <translation>Anzahl der Module</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Names the rights below and proposes the SoC class</source>
        <translation>Benennt die Rechte unten und schlägt die SoC-Klasse vor</translation>
    </message>
    <message>
        <source>New value</source>
        <translation>Neuer Wert</translation>
    </message>
    <message>
        <source>No command yet: %1</source>
        <translation>Noch kein Befehl: %1</translation>
    </message>
    <message>
        <source>No licence can be made: %1</source>
        <translation>Es lässt sich keine Lizenz ausstellen: %1</translation>
    </message>
    <message>
        <source>No license</source>
        <translation>Keine Lizenz</translation>
    </message>
    <message>
        <source>No right is granted.</source>
        <translation>Kein Recht wird gewährt.</translation>
    </message>
    <message>
        <source>No right is left</source>
        <translation>Kein Recht ist übrig</translation>
    </message>
    <message>
        <source>No such file</source>
        <translation>Keine solche Datei</translation>
    </message>
    <message>
        <source>No such file yet: choose one, or make a key</source>
        <translation>Noch keine solche Datei: Wählen Sie eine oder erzeugen Sie einen Schlüssel</translation>
    </message>
    <message>
        <source>No user PIN has been set: initialize it with its maker's tool.</source>
        <translation>Es ist keine Benutzer-PIN gesetzt: Initialisieren Sie es mit dem Werkzeug seines Herstellers.</translation>
    </message>
    <message>
        <source>Nonce</source>
        <translation>Nonce</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>None of the bits %1</source>
        <translation>Keines der Bits %1</translation>
    </message>
    <message>
        <source>Not on this page</source>
        <translation>Steht nicht auf dieser Seite</translation>
    </message>
    <message>
        <source>Not signed</source>
        <translation>Nicht signiert</translation>
    </message>
    <message>
        <source>Not supported</source>
        <translation>Nicht unterstützt</translation>
    </message>
    <message>
        <source>Not used in this version</source>
        <translation>In dieser Version nicht verwendet</translation>
    </message>
    <message>
        <source>Nothing is wrong as far as the form is filled in.</source>
        <translation>Soweit das Formular ausgefüllt ist, ist nichts falsch.</translation>
    </message>
    <message>
        <source>Nothing is wrong with this chain.</source>
        <translation>An dieser Kette ist nichts falsch.</translation>
    </message>
    <message>
        <source>Number of a lifecycle without a word, decimal or 0x and hexadecimal digits</source>
        <translation>Nummer eines Lebenszyklus ohne Namen, dezimal oder 0x und Hexadezimalziffern</translation>
    </message>
    <message>
        <source>Number of files</source>
        <translation>Anzahl der Dateien</translation>
    </message>
    <message>
        <source>O&amp;utput SFU file</source>
        <translation>A&amp;usgabedatei SFU</translation>
    </message>
    <message>
        <source>O&amp;utput SIGN file</source>
        <translation>A&amp;usgabedatei SIGN</translation>
    </message>
    <message>
        <source>O&amp;utput SMI file</source>
        <translation>A&amp;usgabedatei SMI</translation>
    </message>
    <message>
        <source>O&amp;utput folder</source>
        <translation>A&amp;usgabeordner</translation>
    </message>
    <message>
        <source>OB generation path</source>
        <translation>Ausgabedatei OB</translation>
    </message>
    <message>
        <source>OB generation path Browse</source>
        <translation>Ausgabedatei OB durchsuchen</translation>
    </message>
    <message>
        <source>OBKey fi&amp;les (Optional)</source>
        <translation>OBKe&amp;y-Dateien (optional)</translation>
    </message>
    <message>
        <source>OBKey files</source>
        <translation>OBKey-Dateien</translation>
    </message>
    <message>
        <source>OBKey files (*.obk)</source>
        <translation>OBKey-Dateien (*.obk)</translation>
    </message>
    <message>
        <source>OBkey</source>
        <translation>OBkey</translation>
    </message>
    <message>
        <source>OBkey Destination Address</source>
        <translation>OBkey-Zieladresse</translation>
    </message>
    <message>
        <source>OBkey Size</source>
        <translation>OBkey-Größe</translation>
    </message>
    <message>
        <source>OEM &amp;constraint</source>
        <translation>OEM-Bes&amp;chränkung</translation>
    </message>
    <message>
        <source>OEM Root Public Key Table Hash</source>
        <translation>OEM-RPKTH (Hash der Schlüsseltabelle)</translation>
    </message>
    <message>
        <source>OEM key</source>
        <translation>OEM-Schlüssel</translation>
    </message>
    <message>
        <source>OEM public key file</source>
        <translation>OEM-Datei des öffentlichen Schlüssels</translation>
    </message>
    <message>
        <source>Off. "%1" set to "%2" switches it on.</source>
        <translation>Aus. Steht „%1“ auf „%2“, wird es eingeschaltet.</translation>
    </message>
    <message>
        <source>Ok will empty all forms: their files were read with the other padding byte.</source>
        <translation>Ok leert alle Formulare: Ihre Dateien wurden mit dem anderen Füllbyte gelesen.</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open Option Bytes File</source>
        <translation>Option-Bytes-Datei öffnen</translation>
    </message>
    <message>
        <source>Open file</source>
        <translation>Datei öffnen</translation>
    </message>
    <message>
        <source>Opening the token, please wait ...</source>
        <translation>Das Token wird geöffnet, bitte warten ...</translation>
    </message>
    <message>
        <source>Opens a template (.xml)</source>
        <translation>Öffnet eine Vorlage (.xml)</translation>
    </message>
    <message>
        <source>Opens an SFI or SMI image and shows it</source>
        <translation>Öffnet ein SFI- oder SMI-Image und zeigt es</translation>
    </message>
    <message>
        <source>Opens the folder of %1</source>
        <translation>Öffnet den Ordner von %1</translation>
    </message>
    <message>
        <source>Opens the same template again</source>
        <translation>Öffnet dieselbe Vorlage erneut</translation>
    </message>
    <message>
        <source>Operation in progress, please wait ...</source>
        <translation>Vorgang läuft, bitte warten ...</translation>
    </message>
    <message>
        <source>Option &amp;bytes file</source>
        <translation>Option-&amp;Bytes-Datei</translation>
    </message>
    <message>
        <source>Option bytes (*.csv)</source>
        <translation>Option-Bytes (*.csv)</translation>
    </message>
    <message>
        <source>Original file name</source>
        <translation>Ursprünglicher Dateiname</translation>
    </message>
    <message>
        <source>Other tabs: %1, %2</source>
        <translation>Andere Reiter: %1, %2</translation>
    </message>
    <message>
        <source>Ou&amp;tput SFI file</source>
        <translation>Ausgabeda&amp;tei SFI</translation>
    </message>
    <message>
        <source>Ou&amp;tput SFIx file</source>
        <translation>Ausgabeda&amp;tei SFIx</translation>
    </message>
    <message>
        <source>Ou&amp;tput SSP file</source>
        <translation>Ausgabeda&amp;tei SSP</translation>
    </message>
    <message>
        <source>Output &amp;clear ELF file</source>
        <translation>Ausgabedatei ELF im Kl&amp;artext</translation>
    </message>
    <message>
        <source>Output File</source>
        <translation>Ausgabedatei</translation>
    </message>
    <message>
        <source>Output File Select Path</source>
        <translation>Ausgabedatei: Pfad wählen</translation>
    </message>
    <message>
        <source>Output SFU &amp;header file</source>
        <translation>Ausgabedatei SFU-&amp;Header</translation>
    </message>
    <message>
        <source>Overlap between segments</source>
        <translation>Überlappung von Segmenten</translation>
    </message>
    <message>
        <source>Overlap between segments, Unable to merge files: %1, %2</source>
        <translation>Überlappung von Segmenten, Dateien können nicht verbunden werden: %1, %2</translation>
    </message>
    <message>
        <source>Overlap between segments: %1, %2</source>
        <translation>Überlappung von Segmenten: %1, %2</translation>
    </message>
    <message>
        <source>P&amp;rogram token</source>
        <translation>Token p&amp;rogrammieren</translation>
    </message>
    <message>
        <source>PEM (*.pem)</source>
        <translation>PEM (*.pem)</translation>
    </message>
    <message>
        <source>PEM file, P-256 or brainpoolP256t1, without a pass phrase</source>
        <translation>PEM-Datei, P-256 oder brainpoolP256t1, ohne Passphrase</translation>
    </message>
    <message>
        <source>PEM files (*.pem)</source>
        <translation>PEM-Dateien (*.pem)</translation>
    </message>
    <message>
        <source>PEM pass &amp;phrase (Optional)</source>
        <translation>PEM-&amp;Passphrase (optional)</translation>
    </message>
    <message>
        <source>PEM pass phrase</source>
        <translation>PEM-Passphrase</translation>
    </message>
    <message>
        <source>PIN</source>
        <translation>PIN</translation>
    </message>
    <message>
        <source>PIN tries left</source>
        <translation>Übrige PIN-Versuche</translation>
    </message>
    <message>
        <source>PIN tries left: %1</source>
        <translation>Übrige PIN-Versuche: %1</translation>
    </message>
    <message>
        <source>Padding byte</source>
        <translation>Füllbyte</translation>
    </message>
    <message>
        <source>Padding byte 0x00</source>
        <translation>Füllbyte 0x00</translation>
    </message>
    <message>
        <source>Padding byte 0xFF</source>
        <translation>Füllbyte 0xFF</translation>
    </message>
    <message>
        <source>Padding byte, settings file and log file</source>
        <translation>Füllbyte, Einstellungsdatei und Protokolldatei</translation>
    </message>
    <message>
        <source>Panel names</source>
        <translation>Namen der Bereiche</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Ansichten</translation>
    </message>
    <message>
        <source>Password : RMA &amp;Unlock</source>
        <translation>Passwort: RMA &amp;Unlock</translation>
    </message>
    <message>
        <source>Password : RMA Re&amp;lock</source>
        <translation>Passwort: RMA Re&amp;lock</translation>
    </message>
    <message>
        <source>Path of the %1</source>
        <translation>Pfad: %1</translation>
    </message>
    <message>
        <source>Path of the image, %1</source>
        <translation>Pfad des Images, %1</translation>
    </message>
    <message>
        <source>Path of the image, .bin, .hex or .srec</source>
        <translation>Pfad des Images, .bin, .hex oder .srec</translation>
    </message>
    <message>
        <source>Path of the option bytes, .csv</source>
        <translation>Pfad der Option-Bytes, .csv</translation>
    </message>
    <message>
        <source>Path of the provisioning file, .obk</source>
        <translation>Pfad der Provisionierungsdatei, .obk</translation>
    </message>
    <message>
        <source>Path without an extension</source>
        <translation>Pfad ohne Endung</translation>
    </message>
    <message>
        <source>Path without an extension: .cert, .b64 and, below the root, _chain.b64 are added</source>
        <translation>Pfad ohne Endung: .cert, .b64 und, unterhalb der Root, _chain.b64 werden angehängt</translation>
    </message>
    <message>
        <source>Paths that fit</source>
        <translation>Passende Pfade</translation>
    </message>
    <message>
        <source>Place of the certificate in its chain</source>
        <translation>Platz des Zertifikats in seiner Kette</translation>
    </message>
    <message>
        <source>Please specify the starting address for the file : </source>
        <translation>Bitte geben Sie die Startadresse der Datei an: </translation>
    </message>
    <message>
        <source>Programming the token, please wait ...</source>
        <translation>Das Token wird programmiert, bitte warten ...</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Protcol version</source>
        <translation>Protokollversion</translation>
    </message>
    <message>
        <source>Protocol version</source>
        <translation>Protokollversion</translation>
    </message>
    <message>
        <source>Public keys (*.pem *.bin *.pub);;All files (*)</source>
        <translation>Öffentliche Schlüssel (*.pem *.bin *.pub);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Put it back</source>
        <translation>Zurückholen</translation>
    </message>
    <message>
        <source>Put the file written last into the option-bytes fields of the SFI and SFIx tabs.
After an edit it has to be generated again first.</source>
        <translation>Trägt die zuletzt geschriebene Datei in die Option-Bytes-Felder der Reiter SFI und SFIx ein.
Nach einer Änderung muss sie zuerst neu erzeugt werden.</translation>
    </message>
    <message>
        <source>RMA Password relock, hex value &lt; 0x7FFF</source>
        <translation>RMA-Passwort Relock, Hexadezimalwert &lt; 0x7FFF</translation>
    </message>
    <message>
        <source>RMA Password unlock, 32 bits hex value </source>
        <translation>RMA-Passwort Unlock, Hexadezimalwert mit 32 Bits</translation>
    </message>
    <message>
        <source>RMA Password unlock, hex value &lt; 0x7FFF</source>
        <translation>RMA-Passwort Unlock, Hexadezimalwert &lt; 0x7FFF</translation>
    </message>
    <message>
        <source>RMA Relock</source>
        <translation>RMA-Relock</translation>
    </message>
    <message>
        <source>RMA Unlock</source>
        <translation>RMA-Unlock</translation>
    </message>
    <message>
        <source>Random Ke&amp;y area file (Optional)</source>
        <translation>&amp;Zufalls-Schlüsselbereich (optional)</translation>
    </message>
    <message>
        <source>Read</source>
        <translation>Lesen</translation>
    </message>
    <message>
        <source>Read the token, then select a firmware</source>
        <translation>Lesen Sie das Token und wählen Sie dann eine Firmware</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>%1 wird gelesen</translation>
    </message>
    <message>
        <source>Reading the token, please wait ...</source>
        <translation>Das Token wird gelesen, bitte warten ...</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Regenerate</source>
        <translation>Neu erzeugen</translation>
    </message>
    <message>
        <source>Region &amp;mode:    </source>
        <translation>Regions&amp;modus:</translation>
    </message>
    <message>
        <source>Region mode</source>
        <translation>Regionsmodus</translation>
    </message>
    <message>
        <source>Region number</source>
        <translation>Regionsnummer</translation>
    </message>
    <message>
        <source>Register</source>
        <translation>Register</translation>
    </message>
    <message>
        <source>Registers</source>
        <translation>Register</translation>
    </message>
    <message>
        <source>Registers, .csv</source>
        <translation>Register, .csv</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Replaces %1</source>
        <translation>Ersetzt %1</translation>
    </message>
    <message>
        <source>Res.</source>
        <translation>Res.</translation>
    </message>
    <message>
        <source>Reserved bit</source>
        <translation>Reserviertes Bit</translation>
    </message>
    <message>
        <source>Reserved.</source>
        <translation>Reserviert.</translation>
    </message>
    <message>
        <source>Rights left</source>
        <translation>Übrige Rechte</translation>
    </message>
    <message>
        <source>Root Private &amp;Key</source>
        <translation>Privater Root-&amp;Schlüssel</translation>
    </message>
    <message>
        <source>Root Pu&amp;blic Key  </source>
        <translation>Öffentlicher Root-Sc&amp;hlüssel</translation>
    </message>
    <message>
        <source>Runs the image tool with the command at the right</source>
        <translation>Startet das Image-Werkzeug mit dem Befehl rechts</translation>
    </message>
    <message>
        <source>SFI</source>
        <translation>SFI</translation>
    </message>
    <message>
        <source>SFI Option Bytes</source>
        <translation>Option-Bytes</translation>
    </message>
    <message>
        <source>SFI files (*.sfi ; *.ssfi ; *.mcsv)</source>
        <translation>SFI-Dateien (*.sfi ; *.ssfi ; *.mcsv)</translation>
    </message>
    <message>
        <source>SFI information</source>
        <translation>Angaben zum SFI</translation>
    </message>
    <message>
        <source>SFIx</source>
        <translation>SFIx</translation>
    </message>
    <message>
        <source>SFIx information</source>
        <translation>Angaben zum SFIx</translation>
    </message>
    <message>
        <source>SFU</source>
        <translation>SFU</translation>
    </message>
    <message>
        <source>SFU file name</source>
        <translation>Name der SFU-Datei</translation>
    </message>
    <message>
        <source>SFU header file name</source>
        <translation>Name der SFU-Header-Datei</translation>
    </message>
    <message>
        <source>SFU information</source>
        <translation>Angaben zum SFU</translation>
    </message>
    <message>
        <source>SHA-256 of %1</source>
        <translation>SHA-256 von: %1</translation>
    </message>
    <message>
        <source>SHA-256 of the key:
</source>
        <translation>SHA-256 des Schlüssels:
</translation>
    </message>
    <message>
        <source>SIGN information</source>
        <translation>Angaben zum SIGN</translation>
    </message>
    <message>
        <source>SMI</source>
        <translation>SMI</translation>
    </message>
    <message>
        <source>SMI address</source>
        <translation>SMI-Adresse</translation>
    </message>
    <message>
        <source>SMI files</source>
        <translation>SMI-Dateien</translation>
    </message>
    <message>
        <source>SMI files (*.smi)</source>
        <translation>SMI-Dateien (*.smi)</translation>
    </message>
    <message>
        <source>SMI files (Only for &amp;combined case)</source>
        <translation>SMI-Dateien (n&amp;ur kombiniert)</translation>
    </message>
    <message>
        <source>SMI files of the SFI tab that go into this image, too: %1</source>
        <translation>SMI-Dateien des Reiters SFI, die auch in dieses Image kommen: %1</translation>
    </message>
    <message>
        <source>SMI information</source>
        <translation>Angaben zum SMI</translation>
    </message>
    <message>
        <source>SSP</source>
        <translation>SSP</translation>
    </message>
    <message>
        <source>SSP information</source>
        <translation>Angaben zum SSP</translation>
    </message>
    <message>
        <source>Same &amp;for all that follow one another</source>
        <translation>Ebenso für alle &amp;folgenden</translation>
    </message>
    <message>
        <source>Save Configuration</source>
        <translation>Konfiguration speichern</translation>
    </message>
    <message>
        <source>Save file</source>
        <translation>Datei speichern</translation>
    </message>
    <message>
        <source>Save pu&amp;blic key</source>
        <translation>Öffentlichen Schlüssel &amp;speichern</translation>
    </message>
    <message>
        <source>Save the public key of the selected firmware</source>
        <translation>Öffentlichen Schlüssel der gewählten Firmware speichern</translation>
    </message>
    <message>
        <source>Secrets file information</source>
        <translation>Angaben zur Secrets-Datei</translation>
    </message>
    <message>
        <source>Sections</source>
        <translation>Sektionen</translation>
    </message>
    <message>
        <source>Secure Firmware Install</source>
        <translation>Sichere Firmware-Installation</translation>
    </message>
    <message>
        <source>Secure firmwares (*.sfi *.smi);;Other packages (*.smu *.sfuh *.ssp *.ssfi *.sfix);;All files (*)</source>
        <translation>Gesicherte Firmware (*.sfi *.smi);;Andere Pakete (*.smu *.sfuh *.ssp *.ssfi *.sfix);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Secure update (SFU)</source>
        <translation>Sicheres Update (SFU)</translation>
    </message>
    <message>
        <source>Security &amp;version file</source>
        <translation>Datei der Sicherheits&amp;version</translation>
    </message>
    <message>
        <source>Security version</source>
        <translation>Sicherheitsversion</translation>
    </message>
    <message>
        <source>Segment address</source>
        <translation>Segmentadresse</translation>
    </message>
    <message>
        <source>Segment size</source>
        <translation>Segmentgröße</translation>
    </message>
    <message>
        <source>Segments</source>
        <translation>Segmente</translation>
    </message>
    <message>
        <source>Select Path</source>
        <translation>Pfad wählen</translation>
    </message>
    <message>
        <source>Select SFI OB generation folder</source>
        <translation>Ordner für die SFI-Option-Bytes wählen</translation>
    </message>
    <message>
        <source>Select a firmware of one segment.
bin, hex, srec or elf file</source>
        <translation>Wählen Sie eine Firmware aus einem Segment.
bin-, hex-, srec- oder elf-Datei</translation>
    </message>
    <message>
        <source>Select a modules list.
mcsv file</source>
        <translation>Wählen Sie eine Modulliste.
mcsv-Datei</translation>
    </message>
    <message>
        <source>Select a nonce file.
A bin file with a size of 16 bytes</source>
        <translation>Wählen Sie eine Nonce-Datei.
Eine bin-Datei von 16 Bytes</translation>
    </message>
    <message>
        <source>Select a nonce file.
bin file with a size of 12 bytes</source>
        <translation>Wählen Sie eine Nonce-Datei.
bin-Datei von 12 Bytes</translation>
    </message>
    <message>
        <source>Select a random key area file.
kcsv file</source>
        <translation>Wählen Sie eine Datei für den Zufalls-Schlüsselbereich.
kcsv-Datei</translation>
    </message>
    <message>
        <source>Select a secrets file.
bin file with a size of 148 bytes</source>
        <translation>Wählen Sie eine Secrets-Datei.
bin-Datei von 148 Bytes</translation>
    </message>
    <message>
        <source>Select a security version file.
bin file with a size of 16 bytes</source>
        <translation>Wählen Sie eine Datei der Sicherheitsversion.
bin-Datei von 16 Bytes</translation>
    </message>
    <message>
        <source>Select an ELF file.
elf, axf, o, so or out file</source>
        <translation>Wählen Sie eine ELF-Datei.
elf-, axf-, o-, so- oder out-Datei</translation>
    </message>
    <message>
        <source>Select an OEM RPKTH.
binary file with a size of 32 bytes</source>
        <translation>Wählen Sie einen OEM-RPKTH.
Binärdatei von 32 Bytes</translation>
    </message>
    <message>
        <source>Select an OEM public key.
PEM file with a size of 178 bytes</source>
        <translation>Wählen Sie einen öffentlichen OEM-Schlüssel.
PEM-Datei von 178 Bytes</translation>
    </message>
    <message>
        <source>Select an Option bytes configuration file.
csv file</source>
        <translation>Wählen Sie eine Konfigurationsdatei der Option-Bytes.
csv-Datei</translation>
    </message>
    <message>
        <source>Select an SSFI image.
ssfi file</source>
        <translation>Wählen Sie ein SSFI-Image.
ssfi-Datei</translation>
    </message>
    <message>
        <source>Select an encryption key file.
A bin file with a size of 16 bytes</source>
        <translation>Wählen Sie eine Schlüsseldatei.
Eine bin-Datei von 16 Bytes</translation>
    </message>
    <message>
        <source>Select an encryption key file.
bin file with a size of 16 bytes</source>
        <translation>Wählen Sie eine Schlüsseldatei.
bin-Datei von 16 Bytes</translation>
    </message>
    <message>
        <source>Select an input XML File </source>
        <translation>Wählen Sie eine XML-Eingabedatei</translation>
    </message>
    <message>
        <source>Select file name</source>
        <translation>Dateinamen wählen</translation>
    </message>
    <message>
        <source>Select folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>Select the file to write the option bytes to.
csv file</source>
        <translation>Wählen Sie die Datei, in die die Option-Bytes geschrieben werden.
csv-Datei</translation>
    </message>
    <message>
        <source>Select the image to sign.
bin, hex, srec or elf file</source>
        <translation>Wählen Sie das zu signierende Image.
bin-, hex-, srec- oder elf-Datei</translation>
    </message>
    <message>
        <source>Serial</source>
        <translation>Seriennummer</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Settings file</source>
        <translation>Einstellungsdatei</translation>
    </message>
    <message>
        <source>Show %1 while held</source>
        <translation>%1 zeigen, solange gedrückt</translation>
    </message>
    <message>
        <source>Show in folder</source>
        <translation>Im Ordner zeigen</translation>
    </message>
    <message>
        <source>Shows all messages of this run</source>
        <translation>Zeigt alle Meldungen dieses Laufs</translation>
    </message>
    <message>
        <source>Signature</source>
        <translation>Signatur</translation>
    </message>
    <message>
        <source>Signed image &amp;version</source>
        <translation>&amp;Version des signierten Images</translation>
    </message>
    <message>
        <source>Signed size</source>
        <translation>Signierte Größe</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Size of encrypted area</source>
        <translation>Größe des verschlüsselten Bereichs</translation>
    </message>
    <message>
        <source>Slot Information</source>
        <translation>Angaben zu den Slots</translation>
    </message>
    <message>
        <source>SoC cl&amp;ass</source>
        <translation>SoC-Kl&amp;asse</translation>
    </message>
    <message>
        <source>SoC ide&amp;ntifier</source>
        <translation>SoC-Ke&amp;nnung</translation>
    </message>
    <message>
        <source>SoC identifier %1
OEM constraint 0x%2</source>
        <translation>SoC-Kennung %1
OEM-Beschränkung 0x%2</translation>
    </message>
    <message>
        <source>Start address</source>
        <translation>Startadresse</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>State of the device in which the certificate counts; UNKNOWN is any</source>
        <translation>Zustand des Bausteins, in dem das Zertifikat gilt; UNKNOWN steht für jeden</translation>
    </message>
    <message>
        <source>Still missing</source>
        <translation>Es fehlt noch</translation>
    </message>
    <message>
        <source>Still missing: %1</source>
        <translation>Es fehlt noch: %1</translation>
    </message>
    <message>
        <source>Subject</source>
        <translation>Inhaber</translation>
    </message>
    <message>
        <source>Subject key identifier: SHA-256 of the key that the certificate is for</source>
        <translation>Kennung des Inhaberschlüssels: SHA-256 des Schlüssels, für den das Zertifikat gilt</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Takes the selected files off the list
Delete does the same; while none is selected, there is nothing to take off</source>
        <translation>Nimmt die gewählten Dateien von der Liste
Die Entf-Taste tut dasselbe; ist keine gewählt, gibt es nichts zu entfernen</translation>
    </message>
    <message>
        <source>Text of the image tool</source>
        <translation>Text des Image-Werkzeugs</translation>
    </message>
    <message>
        <source>That is a folder</source>
        <translation>Das ist ein Ordner</translation>
    </message>
    <message>
        <source>The 128 bits, the highest first.
Dark: a right that is left; red and crossed out: one that the chain above doesn't grant</source>
        <translation>Die 128 Bits, das höchste zuerst.
Dunkel: ein übriges Recht; rot und durchgestrichen: eines, das die Kette darüber nicht gewährt</translation>
    </message>
    <message>
        <source>The H5 panel is for this device; other panels free the box</source>
        <translation>Der Bereich H5 gilt für diesen Baustein; andere Bereiche geben die Auswahl frei</translation>
    </message>
    <message>
        <source>The PIN is typed at the token.</source>
        <translation>Die PIN wird am Token eingegeben.</translation>
    </message>
    <message>
        <source>The batch ended before it</source>
        <translation>Die Reihe endete davor</translation>
    </message>
    <message>
        <source>The chain that the certificate is joined to.
Root first, .b64</source>
        <translation>Die Kette, an die das Zertifikat gehängt wird.
Root zuerst, .b64</translation>
    </message>
    <message>
        <source>The chain that the form makes is shown here before anything is written.</source>
        <translation>Die Kette, die das Formular erzeugt, wird hier angezeigt, bevor etwas geschrieben wird.</translation>
    </message>
    <message>
        <source>The chips that the licences are for, a file each.
PEM, or 64 bytes: a point on P-256</source>
        <translation>Die Chips, für die die Lizenzen gelten, je eine Datei.
PEM oder 64 Bytes: ein Punkt auf P-256</translation>
    </message>
    <message>
        <source>The command line chose it</source>
        <translation>Die Befehlszeile hat es gewählt</translation>
    </message>
    <message>
        <source>The device that licences are made for; it stands in each of them</source>
        <translation>Der Baustein, für den Lizenzen ausgestellt werden; er steht in jeder</translation>
    </message>
    <message>
        <source>The device that the image is made for</source>
        <translation>Der Baustein, für den das Image erzeugt wird</translation>
    </message>
    <message>
        <source>The device whose option bytes are edited</source>
        <translation>Der Baustein, dessen Option-Bytes bearbeitet werden</translation>
    </message>
    <message>
        <source>The extension is added by the program</source>
        <translation>Die Endung hängt das Programm an</translation>
    </message>
    <message>
        <source>The file has no place for bits 8 to 11 and above 15; they become 0.</source>
        <translation>Die Datei hat keinen Platz für die Bits 8 bis 11 und über 15; sie werden 0.</translation>
    </message>
    <message>
        <source>The file has no place for this bit</source>
        <translation>Die Datei hat keinen Platz für dieses Bit</translation>
    </message>
    <message>
        <source>The file is empty</source>
        <translation>Die Datei ist leer</translation>
    </message>
    <message>
        <source>The file to write; a relative path counts from the template's folder</source>
        <translation>Die zu schreibende Datei; ein relativer Pfad zählt vom Ordner der Vorlage aus</translation>
    </message>
    <message>
        <source>The firmware that the licences are for.
"Read" lists those of the token; a click on one takes it here</source>
        <translation>Die Firmware, für die die Lizenzen gelten.
„Lesen“ listet die des Tokens auf; ein Klick übernimmt eine hierher</translation>
    </message>
    <message>
        <source>The firmware's nonce.
A bin file with a size of 12 bytes</source>
        <translation>Die Nonce der Firmware.
Eine bin-Datei von 12 Bytes</translation>
    </message>
    <message>
        <source>The firmware's number on its token.
1 to 255</source>
        <translation>Die Nummer der Firmware auf ihrem Token.
1 bis 255</translation>
    </message>
    <message>
        <source>The hardware token that holds the firmware keys.
"Refresh" looks for tokens that were plugged in since.</source>
        <translation>Das Hardware-Token mit den Firmware-Schlüsseln.
„Aktualisieren“ sucht nach inzwischen eingesteckten Token.</translation>
    </message>
    <message>
        <source>The image with its signature.
bin file</source>
        <translation>Das Image mit seiner Signatur.
bin-Datei</translation>
    </message>
    <message>
        <source>The key that the certificate is for.
P-256, .pem</source>
        <translation>Der Schlüssel, für den das Zertifikat gilt.
P-256, .pem</translation>
    </message>
    <message>
        <source>The key that the firmware is encrypted with.
A bin file with a size of 16 bytes</source>
        <translation>Der Schlüssel, mit dem die Firmware verschlüsselt wird.
Eine bin-Datei von 16 Bytes</translation>
    </message>
    <message>
        <source>The kind of key that "Regenerate" makes</source>
        <translation>Die Schlüsselart, die „Neu erzeugen“ anlegt</translation>
    </message>
    <message>
        <source>The name of the file is missing</source>
        <translation>Der Name der Datei fehlt</translation>
    </message>
    <message>
        <source>The old key is back.</source>
        <translation>Der alte Schlüssel ist zurück.</translation>
    </message>
    <message>
        <source>The old key is in %1</source>
        <translation>Der alte Schlüssel liegt in %1</translation>
    </message>
    <message>
        <source>The one device that takes the certificate: up to 32 hexadecimal digits; 0 is any</source>
        <translation>Der eine Baustein, der das Zertifikat annimmt: bis zu 32 Hexadezimalziffern; 0 steht für jeden</translation>
    </message>
    <message>
        <source>The padding byte is used to fill gaps between close segments in a firmware file</source>
        <translation>Das Füllbyte füllt Lücken zwischen nahen Segmenten einer Firmware-Datei</translation>
    </message>
    <message>
        <source>The private key that signs.
P-256, .pem</source>
        <translation>Der private Schlüssel, der signiert.
P-256, .pem</translation>
    </message>
    <message>
        <source>The section has no bytes.</source>
        <translation>Die Sektion hat keine Bytes.</translation>
    </message>
    <message>
        <source>The section that becomes the module</source>
        <translation>Die Sektion, die zum Modul wird</translation>
    </message>
    <message>
        <source>The template fixes this value</source>
        <translation>Die Vorlage legt diesen Wert fest</translation>
    </message>
    <message>
        <source>The template that the form shows</source>
        <translation>Die Vorlage, die das Formular zeigt</translation>
    </message>
    <message>
        <source>The template that the form shows
"Open" chooses it; it can be dropped here, too</source>
        <translation>Die Vorlage, die das Formular zeigt
„Öffnen“ wählt sie; sie lässt sich auch hierher ziehen</translation>
    </message>
    <message>
        <source>The token isn't there any more. Plug it in and press "Refresh".</source>
        <translation>Das Token ist nicht mehr da. Stecken Sie es ein und drücken Sie „Aktualisieren“.</translation>
    </message>
    <message>
        <source>The token of the last time isn't plugged in. Plug it in, or choose another one.</source>
        <translation>Das zuletzt benutzte Token ist nicht eingesteckt. Stecken Sie es ein oder wählen Sie ein anderes.</translation>
    </message>
    <message>
        <source>The token's user PIN</source>
        <translation>Die Benutzer-PIN des Tokens</translation>
    </message>
    <message>
        <source>The token's user PIN. It is kept nowhere.
"Read" shows what the token holds.</source>
        <translation>Die Benutzer-PIN des Tokens. Sie wird nirgends gespeichert.
„Lesen“ zeigt, was das Token enthält.</translation>
    </message>
    <message>
        <source>There is no such file</source>
        <translation>Es gibt keine solche Datei</translation>
    </message>
    <message>
        <source>There is no such file: %1</source>
        <translation>Es gibt keine solche Datei: %1</translation>
    </message>
    <message>
        <source>This device takes no RAM size</source>
        <translation>Dieser Baustein nimmt keine RAM-Größe</translation>
    </message>
    <message>
        <source>This device takes no continuation token</source>
        <translation>Dieser Baustein nimmt kein Fortsetzungs-Token</translation>
    </message>
    <message>
        <source>This is a symbol table; it isn't loaded</source>
        <translation>Dies ist eine Symboltabelle; sie wird nicht geladen</translation>
    </message>
    <message>
        <source>This is no hexadecimal number of up to 32 digits</source>
        <translation>Dies ist keine Hexadezimalzahl mit bis zu 32 Ziffern</translation>
    </message>
    <message>
        <source>This isn't a number of 32 bits</source>
        <translation>Dies ist keine Zahl mit 32 Bits</translation>
    </message>
    <message>
        <source>This section has no bytes in the file</source>
        <translation>Diese Sektion hat keine Bytes in der Datei</translation>
    </message>
    <message>
        <source>This section isn't loaded into the device</source>
        <translation>Diese Sektion wird nicht in den Baustein geladen</translation>
    </message>
    <message>
        <source>This text is no hexadecimal number of %1 bits.</source>
        <translation>Dieser Text ist keine Hexadezimalzahl mit %1 Bits.</translation>
    </message>
    <message>
        <source>Token</source>
        <translation>Token</translation>
    </message>
    <message>
        <source>Tool Description:
Makes a boot image with the image tool, from an XML template. Open a template, fill in its fields and press "Generate image". Relative paths count from the template's folder; the values used are kept in the template.</source>
        <translation>Beschreibung:
Erzeugt ein Boot-Image mit dem Image-Werkzeug aus einer XML-Vorlage. Öffnen Sie eine Vorlage, füllen Sie ihre Felder aus und drücken Sie „Image erzeugen“. Relative Pfade zählen vom Ordner der Vorlage aus; die verwendeten Werte bleiben in der Vorlage.</translation>
    </message>
    <message>
        <source>Tool Description:
Makes a provisioning file (.obk) from an XML template. Open a template, fill in its fields and press "Generate OBkey". Relative paths count from the template's folder; the values used are kept in the template.</source>
        <translation>Beschreibung:
Erzeugt eine Provisionierungsdatei (.obk) aus einer XML-Vorlage. Öffnen Sie eine Vorlage, füllen Sie ihre Felder aus und drücken Sie „OBkey erzeugen“. Relative Pfade zählen vom Ordner der Vorlage aus; die verwendeten Werte bleiben in der Vorlage.</translation>
    </message>
    <message>
        <source>ToolBar</source>
        <translation>Werkzeugleiste</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Upper cer&amp;tificate</source>
        <translation>Übergeordnetes Zer&amp;tifikat</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Verwendung</translation>
    </message>
    <message>
        <source>Use in SFI</source>
        <translation>In SFI verwenden</translation>
    </message>
    <message>
        <source>VDR32 Sealed Package Builder</source>
        <translation>VDR32 Sealed Package Builder</translation>
    </message>
    <message>
        <source>VDR32WB Sign</source>
        <translation>WB-Signatur</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>Werte</translation>
    </message>
    <message>
        <source>WB Sign</source>
        <translation>WB-Signatur</translation>
    </message>
    <message>
        <source>What the certificate is for</source>
        <translation>Wofür das Zertifikat gilt</translation>
    </message>
    <message>
        <source>What the image tool is run with, as a shell reads it</source>
        <translation>Womit das Image-Werkzeug gestartet wird, wie eine Shell es liest</translation>
    </message>
    <message>
        <source>What the image tool said, run after run</source>
        <translation>Was das Image-Werkzeug meldete, Lauf für Lauf</translation>
    </message>
    <message>
        <source>What the licences name the firmware by.
1 to 15 bytes</source>
        <translation>Wie die Lizenzen die Firmware nennen.
1 bis 15 Bytes</translation>
    </message>
    <message>
        <source>Where the ELF file without the module goes, to link against or to flash.
ELF file</source>
        <translation>Wohin die ELF-Datei ohne das Modul kommt, zum Linken oder Flashen.
ELF-Datei</translation>
    </message>
    <message>
        <source>Where the SFI image goes.
sfi file</source>
        <translation>Wohin das SFI-Image kommt.
sfi-Datei</translation>
    </message>
    <message>
        <source>Where the SFIx image goes.
sfix file</source>
        <translation>Wohin das SFIx-Image kommt.
sfix-Datei</translation>
    </message>
    <message>
        <source>Where the header goes.
sfuh file</source>
        <translation>Wohin der Header kommt.
sfuh-Datei</translation>
    </message>
    <message>
        <source>Where the image goes.
ssp file</source>
        <translation>Wohin das Image kommt.
ssp-Datei</translation>
    </message>
    <message>
        <source>Where the image goes: .bin, .hex or .srec</source>
        <translation>Wohin das Image kommt: .bin, .hex oder .srec</translation>
    </message>
    <message>
        <source>Where the licences go, each named after its chip's key.
lic files</source>
        <translation>Wohin die Lizenzen kommen, jede nach dem Schlüssel ihres Chips benannt.
lic-Dateien</translation>
    </message>
    <message>
        <source>Where the module goes.
smi file</source>
        <translation>Wohin das Modul kommt.
smi-Datei</translation>
    </message>
    <message>
        <source>Where the update goes.
sfu file</source>
        <translation>Wohin das Update kommt.
sfu-Datei</translation>
    </message>
    <message>
        <source>Whether the image carries a hash of its firmware</source>
        <translation>Ob das Image einen Hash seiner Firmware trägt</translation>
    </message>
    <message>
        <source>Workbench tabs</source>
        <translation>Reiter der Werkbank</translation>
    </message>
    <message>
        <source>Writes the key that licences of this firmware are checked with, as PEM</source>
        <translation>Schreibt den Schlüssel, mit dem Lizenzen dieser Firmware geprüft werden, als PEM</translation>
    </message>
    <message>
        <source>Writes the provisioning file</source>
        <translation>Schreibt die Provisionierungsdatei</translation>
    </message>
    <message>
        <source>Writing %1</source>
        <translation>%1 wird geschrieben</translation>
    </message>
    <message>
        <source>XML file</source>
        <translation>XML-Datei</translation>
    </message>
    <message>
        <source>XML file Open</source>
        <translation>XML-Datei öffnen</translation>
    </message>
    <message>
        <source>XML file Refresh</source>
        <translation>XML-Datei neu laden</translation>
    </message>
    <message>
        <source>XML files (*.xml)</source>
        <translation>XML-Dateien (*.xml)</translation>
    </message>
    <message>
        <source>a section</source>
        <translation>eine Sektion</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>area</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>b64 files (*.b64)</source>
        <translation>b64-Dateien (*.b64)</translation>
    </message>
    <message>
        <source>bin files (*.bin)</source>
        <translation>bin-Dateien (*.bin)</translation>
    </message>
    <message>
        <source>can't be taken back</source>
        <translation>nicht zurücknehmbar</translation>
    </message>
    <message>
        <source>certificate path</source>
        <translation>Pfad des Zertifikats</translation>
    </message>
    <message>
        <source>check SFI/SMI</source>
        <translation>SFI/SMI prüfen</translation>
    </message>
    <message>
        <source>chip public key</source>
        <translation>öffentlicher Chip-Schlüssel</translation>
    </message>
    <message>
        <source>clear</source>
        <translation>leeren</translation>
    </message>
    <message>
        <source>close</source>
        <translation>schließen</translation>
    </message>
    <message>
        <source>device</source>
        <translation>Baustein</translation>
    </message>
    <message>
        <source>differs</source>
        <translation>weicht ab</translation>
    </message>
    <message>
        <source>disable</source>
        <translation>aus</translation>
    </message>
    <message>
        <source>enable</source>
        <translation>ein</translation>
    </message>
    <message>
        <source>encryption key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>external firmware file</source>
        <translation>externe Firmware-Datei</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>faults</source>
        <translation>Mängel</translation>
    </message>
    <message>
        <source>firmware</source>
        <translation>Firmware</translation>
    </message>
    <message>
        <source>firmware file</source>
        <translation>Firmware-Datei</translation>
    </message>
    <message>
        <source>firmware identifier</source>
        <translation>Firmware-Kennung</translation>
    </message>
    <message>
        <source>input image</source>
        <translation>Eingabe-Image</translation>
    </message>
    <message>
        <source>internal firmware file</source>
        <translation>interne Firmware-Datei</translation>
    </message>
    <message>
        <source>key or file</source>
        <translation>Schlüssel oder Datei</translation>
    </message>
    <message>
        <source>logs</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>made</source>
        <translation>erzeugt</translation>
    </message>
    <message>
        <source>matches</source>
        <translation>stimmt überein</translation>
    </message>
    <message>
        <source>maximum RAM size available for a multi-image SFI</source>
        <translation>Größter verfügbarer RAM für ein SFI aus mehreren Images</translation>
    </message>
    <message>
        <source>microcontroller</source>
        <translation>Mikrocontroller</translation>
    </message>
    <message>
        <source>no name</source>
        <translation>ohne Namen</translation>
    </message>
    <message>
        <source>nonce</source>
        <translation>Nonce</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keiner</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>nicht bekannt</translation>
    </message>
    <message>
        <source>not made</source>
        <translation>nicht erzeugt</translation>
    </message>
    <message>
        <source>not told</source>
        <translation>nicht angegeben</translation>
    </message>
    <message>
        <source>option bytes</source>
        <translation>Option-Bytes</translation>
    </message>
    <message>
        <source>output SFU file</source>
        <translation>Ausgabedatei SFU</translation>
    </message>
    <message>
        <source>output SFU header file</source>
        <translation>Ausgabedatei SFU-Header</translation>
    </message>
    <message>
        <source>output SMI file</source>
        <translation>Ausgabedatei SMI</translation>
    </message>
    <message>
        <source>output SSP file</source>
        <translation>Ausgabedatei SSP</translation>
    </message>
    <message>
        <source>output clear ELF file</source>
        <translation>Ausgabedatei ELF im Klartext</translation>
    </message>
    <message>
        <source>output file</source>
        <translation>Ausgabedatei</translation>
    </message>
    <message>
        <source>output folder</source>
        <translation>Ausgabeordner</translation>
    </message>
    <message>
        <source>plain</source>
        <translation>offen</translation>
    </message>
    <message>
        <source>private key</source>
        <translation>privater Schlüssel</translation>
    </message>
    <message>
        <source>private key, raw</source>
        <translation>privater Schlüssel, roh</translation>
    </message>
    <message>
        <source>protected</source>
        <translation>geschützt</translation>
    </message>
    <message>
        <source>public key</source>
        <translation>öffentlicher Schlüssel</translation>
    </message>
    <message>
        <source>secrets file</source>
        <translation>Secrets-Datei</translation>
    </message>
    <message>
        <source>section</source>
        <translation>Abschnitt</translation>
    </message>
    <message>
        <source>security version</source>
        <translation>Sicherheitsversion</translation>
    </message>
    <message>
        <source>see bits above</source>
        <translation>siehe Bits oben</translation>
    </message>
    <message>
        <source>segment</source>
        <translation>Segment</translation>
    </message>
    <message>
        <source>settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>token</source>
        <translation>Token</translation>
    </message>
    <message>
        <source>upper certificate</source>
        <translation>übergeordnetes Zertifikat</translation>
    </message>
    <message>
        <source>verified</source>
        <translation>geprüft</translation>
    </message>
</context>
</TS>
