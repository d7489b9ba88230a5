<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>FSSkyvault</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Credits:</source>
        <translation>Dank an:</translation>
    </message>
    <message>
        <source>ZIP Support by RichSoft</source>
        <translation>ZIP-Unterstützung von RichSoft</translation>
    </message>
    <message>
        <source>CCRP Common Controls Replacement Project</source>
        <translation>CCRP Common Controls Replacement Project</translation>
    </message>
    <message>
        <source>Chilkat Email Engine</source>
        <translation>Chilkat Email Engine</translation>
    </message>
    <message>
        <source>FS 2002 Installation Folder:</source>
        <translation>Ordner des FS 2002:</translation>
    </message>
    <message>
        <source>Hangar Base Folder:</source>
        <translation>Ordner des Hangars:</translation>
    </message>
    <message>
        <source>Packages Base Folder:</source>
        <translation>Ordner der Packages:</translation>
    </message>
    <message>
        <source>Panel Container Folder:</source>
        <translation>Ordner der Panels:</translation>
    </message>
    <message>
        <source>Scenery Library Folder:</source>
        <translation>Ordner der Szenerie-Bibliothek:</translation>
    </message>
    <message>
        <source>POP Username:</source>
        <translation>POP-Benutzer:</translation>
    </message>
    <message>
        <source>POP Password:</source>
        <translation>POP-Passwort:</translation>
    </message>
    <message>
        <source>POP Mailhost:</source>
        <translation>POP-Server:</translation>
    </message>
    <message>
        <source>POP Port:</source>
        <translation>POP-Port:</translation>
    </message>
    <message>
        <source>SMTP Mailhost:</source>
        <translation>SMTP-Server:</translation>
    </message>
    <message>
        <source>SMTP Username:</source>
        <translation>SMTP-Benutzer:</translation>
    </message>
    <message>
        <source>SMTP Password:</source>
        <translation>SMTP-Passwort:</translation>
    </message>
    <message>
        <source>Outlook Inbox Folder:</source>
        <translation>Outlook-Posteingang:</translation>
    </message>
    <message>
        <source>Mail File...</source>
        <translation>Maildatei...</translation>
    </message>
    <message>
        <source>Mail Folder...</source>
        <translation>Mailordner...</translation>
    </message>
    <message>
        <source>&amp;Sender...</source>
        <translation>&amp;Absender...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>First Name:</source>
        <translation>Vorname:</translation>
    </message>
    <message>
        <source>Last Name:</source>
        <translation>Nachname:</translation>
    </message>
    <message>
        <source>EMail Address:</source>
        <translation>E-Mail-Adresse:</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Message:</source>
        <translation>Nachricht:</translation>
    </message>
    <message>
        <source>&amp;Send</source>
        <translation>&amp;Senden</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Create folder...</source>
        <translation>Ordner anlegen...</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>Flatten:</source>
        <translation>Flatten:</translation>
    </message>
    <message>
        <source>Exclude:</source>
        <translation>Exclude:</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>Eintrag</translation>
    </message>
    <message>
        <source>FS Skyvault</source>
        <translation>FS Skyvault</translation>
    </message>
    <message>
        <source>FS Skyvault Settings</source>
        <translation>FS Skyvault – Einstellungen</translation>
    </message>
    <message>
        <source>FS Skyvault - Sender</source>
        <translation>FS Skyvault – Absender</translation>
    </message>
    <message>
        <source>FS Skyvault - Email Package</source>
        <translation>FS Skyvault – Package mailen</translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>FS Skyvault - Scenery Options</source>
        <translation>FS Skyvault – Szenerie-Optionen</translation>
    </message>
    <message>
        <source>FS Skyvault - Show Picture</source>
        <translation>FS Skyvault – Bild</translation>
    </message>
    <message>
        <source>Locations</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>EMail</source>
        <translation>E-Mail</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
    <message>
        <source>Aircrafts</source>
        <translation>Flugzeuge</translation>
    </message>
    <message>
        <source>Panels</source>
        <translation>Panels</translation>
    </message>
    <message>
        <source>Sounds</source>
        <translation>Sounds</translation>
    </message>
    <message>
        <source>Sceneries</source>
        <translation>Szenerien</translation>
    </message>
    <message>
        <source>Install Package/ZIP</source>
        <translation>Package/ZIP installieren</translation>
    </message>
    <message>
        <source>Aircraft</source>
        <translation>Flugzeug</translation>
    </message>
    <message>
        <source>Scenery</source>
        <translation>Szenerie</translation>
    </message>
    <message>
        <source>Package SKV Addon</source>
        <translation>Add-on in ein Package packen</translation>
    </message>
    <message>
        <source>UnPackage SKV Addon</source>
        <translation>Add-on aus dem Package auspacken</translation>
    </message>
    <message>
        <source>Email Package to a Friend...</source>
        <translation>Package an einen Freund mailen...</translation>
    </message>
    <message>
        <source>Install SKV Addon from Email</source>
        <translation>Add-on aus E-Mail installieren</translation>
    </message>
    <message>
        <source>Outlook</source>
        <translation>Outlook</translation>
    </message>
    <message>
        <source>POP3</source>
        <translation>POP3</translation>
    </message>
    <message>
        <source>Synchronize Panels Folder</source>
        <translation>Panel-Ordner abgleichen</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>&amp;Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>FS 2002 Aircraft</source>
        <translation>Flugzeuge des FS 2002</translation>
    </message>
    <message>
        <source>Hangar</source>
        <translation>Hangar</translation>
    </message>
    <message>
        <source>Packages</source>
        <translation>Packages</translation>
    </message>
    <message>
        <source>Scenery Manager</source>
        <translation>Szenerie-Manager</translation>
    </message>
    <message>
        <source>Inactive Sceneries</source>
        <translation>Inaktive Szenerien</translation>
    </message>
    <message>
        <source>View Config File</source>
        <translation>Konfiguration ansehen</translation>
    </message>
    <message>
        <source>Aircraft.cfg</source>
        <translation>Aircraft.cfg</translation>
    </message>
    <message>
        <source>Panel.cfg</source>
        <translation>Panel.cfg</translation>
    </message>
    <message>
        <source>Sound.cfg</source>
        <translation>Sound.cfg</translation>
    </message>
    <message>
        <source>Model.cfg</source>
        <translation>Model.cfg</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Users Manual</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>Dowmload latest version...</source>
        <translation>Neueste Version laden...</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Make Snapshot of FS2002</source>
        <translation>Foto des FS2002 aufnehmen</translation>
    </message>
    <message>
        <source>Picture from Clipboard</source>
        <translation>Bild aus der Zwischenablage</translation>
    </message>
    <message>
        <source>Picture from File...</source>
        <translation>Bild aus Datei...</translation>
    </message>
    <message>
        <source>Remove this picture</source>
        <translation>Dieses Bild entfernen</translation>
    </message>
    <message>
        <source>&amp;Open Folder</source>
        <translation>&amp;Ordner öffnen</translation>
    </message>
    <message>
        <source>&amp;View Aircraft.cfg</source>
        <translation>Aircraft.cfg &amp;ansehen</translation>
    </message>
    <message>
        <source>&amp;Copy Path</source>
        <translation>&amp;Pfad kopieren</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>&amp;Edit Flatten and Exclude...</source>
        <translation>Flatten und Exclude &amp;bearbeiten...</translation>
    </message>
    <message>
        <source>Add New...</source>
        <translation>Hinzufügen...</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Restore original</source>
        <translation>Original zurück</translation>
    </message>
    <message>
        <source>&lt;SPECIMEN&gt;</source>
        <translation>&lt;BEISPIEL&gt;</translation>
    </message>
    <message>
        <source>Save A/C Info</source>
        <translation>Angaben sichern</translation>
    </message>
    <message>
        <source>Title:</source>
        <translation>Titel:</translation>
    </message>
    <message>
        <source>Air Dynamics:</source>
        <translation>Flugdynamik:</translation>
    </message>
    <message>
        <source>Model:</source>
        <translation>Modell:</translation>
    </message>
    <message>
        <source>Panel:</source>
        <translation>Panel:</translation>
    </message>
    <message>
        <source>Sound:</source>
        <translation>Sound:</translation>
    </message>
    <message>
        <source>Texture:</source>
        <translation>Textur:</translation>
    </message>
    <message>
        <source>ATC ID:</source>
        <translation>ATC-Kennung:</translation>
    </message>
    <message>
        <source>Airline:</source>
        <translation>Airline:</translation>
    </message>
    <message>
        <source>Flight Number:</source>
        <translation>Flugnummer:</translation>
    </message>
    <message>
        <source>Manufacturer:</source>
        <translation>Hersteller:</translation>
    </message>
    <message>
        <source>Type:</source>
        <translation>Typ:</translation>
    </message>
    <message>
        <source>Variation:</source>
        <translation>Variante:</translation>
    </message>
    <message>
        <source>Description:</source>
        <translation>Beschreibung:</translation>
    </message>
    <message>
        <source>Assign to A/C</source>
        <translation>Zuweisen</translation>
    </message>
    <message>
        <source>Installed in FS2002:</source>
        <translation>Im FS2002 installiert:</translation>
    </message>
    <message>
        <source>Not saved yet</source>
        <translation>Noch nicht gesichert</translation>
    </message>
    <message>
        <source>1 area of Scenery.cfg is not listed</source>
        <translation>1 Area der Scenery.cfg ist nicht aufgeführt</translation>
    </message>
    <message>
        <source>%1 areas of Scenery.cfg are not listed</source>
        <translation>%1 Areas der Scenery.cfg sind nicht aufgeführt</translation>
    </message>
    <message>
        <source>Save SceneryDB</source>
        <translation>SzenerieDB sichern</translation>
    </message>
    <message>
        <source>In SKV Scenery Library:</source>
        <translation>In der Szenerie-Bibliothek:</translation>
    </message>
    <message>
        <source>Add to FS2002</source>
        <translation>In den FS2002</translation>
    </message>
    <message>
        <source>&lt;&lt;-- Add to Library</source>
        <translation>&lt;&lt;-- In die Bibliothek</translation>
    </message>
    <message>
        <source>Scenery Files Browser:</source>
        <translation>Szenerie-Dateien:</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Textures</source>
        <translation>Texturen</translation>
    </message>
    <message>
        <source>Loading List. Please wait...</source>
        <translation>Liste wird geladen. Bitte warten...</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Panel</source>
        <translation>Panel</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>Sound</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>ATC</source>
        <translation>ATC</translation>
    </message>
    <message>
        <source>UI</source>
        <translation>UI</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>#</source>
        <translation>#</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Ordner:</translation>
    </message>
    <message>
        <source>Area:</source>
        <translation>Area:</translation>
    </message>
    <message>
        <source>Layer:</source>
        <translation>Ebene:</translation>
    </message>
    <message>
        <source>To Hangar...</source>
        <translation>In den Hangar...</translation>
    </message>
    <message>
        <source>To FS2002...</source>
        <translation>In den FS2002...</translation>
    </message>
    <message>
        <source>Aircraft: FS 2002</source>
        <translation>Flugzeuge: FS 2002</translation>
    </message>
    <message>
        <source>Aircraft: HANGAR</source>
        <translation>Flugzeuge: HANGAR</translation>
    </message>
    <message>
        <source>Original</source>
        <translation>Original</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Alias: %1</source>
        <translation>Alias: %1</translation>
    </message>
    <message>
        <source>Cannot be looked at</source>
        <translation>Nicht lesbar</translation>
    </message>
    <message>
        <source>No Scenery.cfg here</source>
        <translation>Hier ist keine Scenery.cfg</translation>
    </message>
    <message>
        <source>This folder is not there</source>
        <translation>Diesen Ordner gibt es nicht</translation>
    </message>
    <message>
        <source>Not used</source>
        <translation>Nicht benutzt</translation>
    </message>
    <message>
        <source>No folder yet</source>
        <translation>Noch kein Ordner</translation>
    </message>
    <message>
        <source>There is no drive %1</source>
        <translation>Es gibt kein Laufwerk %1</translation>
    </message>
    <message>
        <source>Folder found</source>
        <translation>Ordner gefunden</translation>
    </message>
    <message>
        <source>A file of this name is in the way</source>
        <translation>Eine Datei dieses Namens ist im Weg</translation>
    </message>
    <message>
        <source>Will be made</source>
        <translation>Wird angelegt</translation>
    </message>
    <message>
        <source>FS2002 found here</source>
        <translation>FS2002 gefunden</translation>
    </message>
    <message>
        <source>Picture of the add-on</source>
        <translation>Bild des Add-ons</translation>
    </message>
    <message>
        <source>Send by:</source>
        <translation>Senden über:</translation>
    </message>
    <message>
        <source>Variations of the aircraft</source>
        <translation>Varianten des Flugzeugs</translation>
    </message>
    <message>
        <source>No variations to show.</source>
        <translation>Keine Varianten.</translation>
    </message>
    <message>
        <source>Details of the variation</source>
        <translation>Einzelheiten der Variante</translation>
    </message>
    <message>
        <source>No panels in this library yet.</source>
        <translation>Noch keine Panels in dieser Bibliothek.</translation>
    </message>
    <message>
        <source>Picture of the panel</source>
        <translation>Bild des Panels</translation>
    </message>
    <message>
        <source>No sounds in this library yet.</source>
        <translation>Noch keine Sounds in dieser Bibliothek.</translation>
    </message>
    <message>
        <source>Picture of the aircraft</source>
        <translation>Bild des Flugzeugs</translation>
    </message>
    <message>
        <source>Parts of the aircraft</source>
        <translation>Teile des Flugzeugs</translation>
    </message>
    <message>
        <source>Browse: %1</source>
        <translation>Durchsuchen: %1</translation>
    </message>
    <message>
        <source>Mail folders found:</source>
        <translation>Mailordner:</translation>
    </message>
    <message>
        <source>Sender of Packages</source>
        <translation>Absender der Packages</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Frage</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Border between the lists</source>
        <translation>Grenze zwischen den Listen</translation>
    </message>
    <message>
        <source>Drag to give one list more room</source>
        <translation>Ziehen gibt einer Liste mehr Platz</translation>
    </message>
    <message>
        <source>Border between the halves</source>
        <translation>Grenze zwischen den Hälften</translation>
    </message>
    <message>
        <source>Drag to give one half more room</source>
        <translation>Ziehen gibt einer Hälfte mehr Platz</translation>
    </message>
    <message>
        <source>Folders</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Picture at full size</source>
        <translation>Bild in voller Größe</translation>
    </message>
    <message>
        <source>No picture</source>
        <translation>Kein Bild</translation>
    </message>
    <message>
        <source>This picture cannot be shown</source>
        <translation>Dieses Bild lässt sich nicht zeigen</translation>
    </message>
    <message>
        <source>New picture</source>
        <translation>Neues Bild</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
    <message>
        <source>Ctrl+Up</source>
        <translation>Strg+Hoch</translation>
    </message>
    <message>
        <source>Ctrl+Down</source>
        <translation>Strg+Runter</translation>
    </message>
    <message>
        <source>%1, sorted ascending</source>
        <translation>%1, aufsteigend sortiert</translation>
    </message>
    <message>
        <source>%1, sorted descending</source>
        <translation>%1, absteigend sortiert</translation>
    </message>
    <message>
        <source>To sort, click or press Ctrl and the number of the column</source>
        <translation>Zum Sortieren klicken oder Strg und die Nummer der Spalte drücken</translation>
    </message>
    <message>
        <source>Sceneries installed in FS2002</source>
        <translation>Im FS2002 installierte Szenerien</translation>
    </message>
    <message>
        <source>No sceneries are listed.</source>
        <translation>Keine Szenerien.</translation>
    </message>
    <message>
        <source>Not active in FS2002</source>
        <translation>Im FS2002 nicht aktiv</translation>
    </message>
    <message>
        <source>, built in: cannot be deleted</source>
        <translation>, eingebaut: nicht löschbar</translation>
    </message>
    <message>
        <source>Sceneries in the library</source>
        <translation>Szenerien der Bibliothek</translation>
    </message>
    <message>
        <source>No sceneries in the library yet.</source>
        <translation>Noch keine Szenerien in der Bibliothek.</translation>
    </message>
    <message>
        <source>Picture of the scenery</source>
        <translation>Bild der Szenerie</translation>
    </message>
    <message>
        <source>Scenery files browser</source>
        <translation>Szenerie-Dateien</translation>
    </message>
    <message>
        <source>The folder's files go once they are in the library</source>
        <translation>Die Dateien des Ordners gehen, sobald sie in der Bibliothek sind</translation>
    </message>
    <message>
        <source>The folder stays as it is</source>
        <translation>Der Ordner bleibt, wie er ist</translation>
    </message>
    <message>
        <source>The folder is a new scenery of the library</source>
        <translation>Der Ordner ist eine neue Szenerie der Bibliothek</translation>
    </message>
    <message>
        <source>The folder holds main textures of the selected library scenery</source>
        <translation>Der Ordner enthält Texturen der gewählten Bibliotheks-Szenerie</translation>
    </message>
    <message>
        <source>Add-ons of Flight Simulator 2002</source>
        <translation>Add-ons des Flight Simulator 2002</translation>
    </message>
    <message>
        <source>About FS Skyvault</source>
        <translation>Über FS Skyvault</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Panel library</source>
        <translation>Panel-Bibliothek</translation>
    </message>
    <message>
        <source>Sound library</source>
        <translation>Sound-Bibliothek</translation>
    </message>
    <message>
        <source>No aircraft here yet.
File, Install Package/ZIP adds one from a ZIP to the Hangar.</source>
        <translation>Noch kein Flugzeug hier.
Datei, Package/ZIP installieren bringt eines aus einer ZIP-Datei in den Hangar.</translation>
    </message>
    <message>
        <source>To your mail program, such as Thunderbird</source>
        <translation>An Ihr Mailprogramm, etwa Thunderbird</translation>
    </message>
    <message>
        <source>No SMTP Mailhost is set yet: File, Settings (F2), EMail</source>
        <translation>Noch kein SMTP-Server: Datei, Einstellungen (F2), E-Mail</translation>
    </message>
    <message>
        <source>Through the SMTP Mailhost %1</source>
        <translation>Über den SMTP-Server %1</translation>
    </message>
    <message>
        <source>Nothing is selected in the list</source>
        <translation>In der Liste ist nichts gewählt</translation>
    </message>
    <message>
        <source>Aircraft: %1</source>
        <translation>Flugzeug: %1</translation>
    </message>
    <message>
        <source>Scenery: %1</source>
        <translation>Szenerie: %1</translation>
    </message>
    <message>
        <source>No mail folders found on this computer</source>
        <translation>Keine Mailordner auf diesem Rechner gefunden</translation>
    </message>
    <message>
        <source>Choose one of the mail folders found...</source>
        <translation>Einen der gefundenen Mailordner wählen...</translation>
    </message>
    <message>
        <source>"Outlook" stands for the mail program of this computer, such as Thunderbird.</source>
        <translation>"Outlook" steht für das Mailprogramm dieses Rechners, etwa Thunderbird.</translation>
    </message>
    <message>
        <source>The server's name, or name:port</source>
        <translation>Der Name des Servers, oder Name:Port</translation>
    </message>
    <message>
        <source>No add-on is selected</source>
        <translation>Kein Add-on ist ausgewählt</translation>
    </message>
    <message>
        <source>There is no picture to remove</source>
        <translation>Es gibt kein Bild zu entfernen</translation>
    </message>
    <message>
        <source>This is not an SKV screenshot and cannot be removed</source>
        <translation>Dieses Bild stammt nicht von SKV und kann nicht entfernt werden</translation>
    </message>
    <message>
        <source>Empty when the server asks for no login</source>
        <translation>Leer, wenn der Server keine Anmeldung verlangt</translation>
    </message>
    <message>
        <source>The simulator's folder is not set.</source>
        <translation>Der Ordner des Simulators ist nicht eingestellt.</translation>
    </message>
    <message>
        <source>The scenery database has no areas.</source>
        <translation>Die Szenerie-Datenbank hat keine Areas.</translation>
    </message>
    <message>
        <source>No folder is set for the scenery library.</source>
        <translation>Für die Szenerie-Bibliothek ist kein Ordner eingestellt.</translation>
    </message>
    <message>
        <source>No aircraft is selected.</source>
        <translation>Kein Flugzeug ist gewählt.</translation>
    </message>
    <message>
        <source>File, Settings (F2) is the place.</source>
        <translation>Datei, Einstellungen (F2) ist der Ort dafür.</translation>
    </message>
    <message>
        <source>The Hangar is empty.</source>
        <translation>Der Hangar ist leer.</translation>
    </message>
    <message>
        <source>"To Hangar..." among the simulator's aircraft copies one into it.</source>
        <translation>"In den Hangar..." bei den Flugzeugen des Simulators kopiert eines hinein.</translation>
    </message>
    <message>
        <source>There are no aircraft in the simulator.</source>
        <translation>Im Simulator gibt es keine Flugzeuge.</translation>
    </message>
    <message>
        <source>File, Install Package/ZIP, Aircraft unpacks one.</source>
        <translation>Datei, Package/ZIP installieren, Flugzeug packt eines aus.</translation>
    </message>
    <message>
        <source>F5 tries again.</source>
        <translation>F5 versucht es noch einmal.</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Active in FS2002</source>
        <translation>Im FS2002 aktiv</translation>
    </message>
    <message>
        <source>FS Skyvault looks after the add-ons of one Flight Simulator 2002, so first name the folder in which the simulator is installed. The right folder is known by the file Scenery.cfg in it.</source>
        <translation>FS Skyvault kümmert sich um die Add-ons eines Flight Simulator 2002. Nennen Sie darum zuerst den Ordner, in dem der Simulator installiert ist. Den richtigen Ordner erkennt man an der Datei Scenery.cfg darin.</translation>
    </message>
    <message>
        <source>None was found in the usual places of this computer and its Wine prefixes. If the simulator is installed, choose its folder with the button "..."; if not, install it with Wine first.</source>
        <translation>An den üblichen Orten dieses Rechners und seiner Wine-Präfixe wurde keiner gefunden. Ist der Simulator installiert, wählen Sie seinen Ordner mit der Schaltfläche "..."; wenn nicht, installieren Sie ihn zuerst mit Wine.</translation>
    </message>
    <message>
        <source>One was found, and its folder stands below.</source>
        <translation>Einer wurde gefunden, sein Ordner steht unten.</translation>
    </message>
    <message>
        <source>Several were found. Choose the one to look after:</source>
        <translation>Mehrere wurden gefunden. Wählen Sie den, um den es geht:</translation>
    </message>
    <message>
        <source>in FS2002</source>
        <translation>im FS2002</translation>
    </message>
    <message>
        <source>as Package</source>
        <translation>als Package</translation>
    </message>
    <message>
        <source>in Hangar</source>
        <translation>im Hangar</translation>
    </message>
    <message>
        <source>in the library</source>
        <translation>in der Bibliothek</translation>
    </message>
    <message>
        <source>only in the library</source>
        <translation>nur in der Bibliothek</translation>
    </message>
    <message>
        <source>Zip Files</source>
        <translation>ZIP-Dateien</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>All Files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>the Hangar</source>
        <translation>im Hangar</translation>
    </message>
    <message>
        <source>the simulator</source>
        <translation>im Simulator</translation>
    </message>
    <message>
        <source>%1 aircraft stands in %2 and is not listed yet.</source>
        <translation>%1 Flugzeug steht %2 und ist noch nicht aufgenommen.</translation>
    </message>
    <message>
        <source>At least %1 aircraft stand in %2 and are not listed yet.</source>
        <translation>Mindestens %1 Flugzeuge stehen %2 und sind noch nicht aufgenommen.</translation>
    </message>
    <message>
        <source>%1 aircraft stand in %2 and are not listed yet.</source>
        <translation>%1 Flugzeuge stehen %2 und sind noch nicht aufgenommen.</translation>
    </message>
    <message>
        <source>File, Import, %1 lists what is there.</source>
        <translation>Datei, Importieren, %1 nimmt auf, was da ist.</translation>
    </message>
    <message>
        <source>There is no aircraft folder in %1</source>
        <translation>Es gibt keinen Flugzeugordner in %1</translation>
    </message>
    <message>
        <source>The aircraft folder cannot be read: %1</source>
        <translation>Der Flugzeugordner kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>The list %1 could not be read.</source>
        <translation>Die Liste %1 konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>%1 could not be read.</source>
        <translation>%1 konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>%1 could not be read: %2</source>
        <translation>%1 konnte nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1 is not set.</source>
        <translation>%1 ist nicht eingestellt.</translation>
    </message>
    <message>
        <source>%1 is not there: %2</source>
        <translation>%1 ist nicht da: %2</translation>
    </message>
    <message>
        <source>%1 is not there.</source>
        <translation>%1 ist nicht da.</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>The Hangar's folder</source>
        <translation>Der Ordner des Hangars</translation>
    </message>
    <message>
        <source>The simulator's folder</source>
        <translation>Der Ordner des Simulators</translation>
    </message>
    <message>
        <source>The scenery library is not there: %1</source>
        <translation>Die Szenerie-Bibliothek ist nicht da: %1</translation>
    </message>
    <message>
        <source>If its disk is not mounted, mount it and press F5.</source>
        <translation>Falls sein Datenträger nicht eingehängt ist: einhängen und F5 drücken.</translation>
    </message>
    <message>
        <source>File, Settings (F2) names another folder.</source>
        <translation>Datei, Einstellungen (F2) nennt einen anderen Ordner.</translation>
    </message>
    <message>
        <source>No aircraft is listed.</source>
        <translation>Noch kein Flugzeug ist aufgenommen.</translation>
    </message>
    <message>
        <source>No panel is listed.</source>
        <translation>Noch kein Panel ist aufgenommen.</translation>
    </message>
    <message>
        <source>No sound is listed.</source>
        <translation>Noch kein Sound ist aufgenommen.</translation>
    </message>
    <message>
        <source>No scenery is in the library yet.</source>
        <translation>Noch keine Szenerie ist in der Bibliothek.</translation>
    </message>
    <message>
        <source>File, Install Package/ZIP, Scenery unpacks one, "Add to Library" takes a folder, File, Import, Sceneries those of the simulator.</source>
        <translation>Datei, Package/ZIP installieren, Szenerie packt eine aus; "In die Bibliothek" nimmt einen Ordner; Datei, Importieren, Szenerien nimmt die des Simulators.</translation>
    </message>
    <message>
        <source>This cannot be reached by any drive.</source>
        <translation>Über kein Laufwerk zu erreichen.</translation>
    </message>
    <message>
        <source>This leads above its drive.</source>
        <translation>Führt über das Laufwerk hinaus.</translation>
    </message>
    <message>
        <source>This holds a character that no folder's name can hold.</source>
        <translation>Enthält ein Zeichen, das in keinem Ordnernamen stehen kann.</translation>
    </message>
    <message>
        <source>This is not a full path, such as C:\FS2002.</source>
        <translation>Kein vollständiger Pfad wie C:\FS2002.</translation>
    </message>
    <message>
        <source>This cannot be stored. The simulator's files have no "%1".</source>
        <translation>Nicht zu speichern: Die Dateien des Simulators kennen kein "%1".</translation>
    </message>
    <message>
        <source>"%1" describes no variation.</source>
        <translation>"%1" beschreibt keine Variante.</translation>
    </message>
    <message>
        <source>"%1" is not there.</source>
        <translation>"%1" ist nicht da.</translation>
    </message>
    <message>
        <source>"%1" could not be read.</source>
        <translation>"%1" konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>empty</source>
        <translation>leer</translation>
    </message>
    <message>
        <source>%1 %2 percent</source>
        <translation>%1 %2 Prozent</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Show what was left over</source>
        <translation>Übriges zeigen</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Installieren</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>Überspringen</translation>
    </message>
    <message>
        <source>Make it anew</source>
        <translation>Neu machen</translation>
    </message>
    <message>
        <source>Send it as it is</source>
        <translation>So senden</translation>
    </message>
    <message>
        <source>Uncompress it again</source>
        <translation>Wieder entpacken</translation>
    </message>
    <message>
        <source>Leave it compressed</source>
        <translation>Gepackt lassen</translation>
    </message>
    <message>
        <source>There is no folder "%1"</source>
        <translation>Es gibt keinen Ordner "%1"</translation>
    </message>
    <message>
        <source>"%1" does not lie in "%2".</source>
        <translation>"%1" liegt nicht in "%2".</translation>
    </message>
    <message>
        <source>"%1" leads out of "%2".</source>
        <translation>"%1" führt aus "%2" hinaus.</translation>
    </message>
</context>
</TS>
